#include "CatalogueReader.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <ios>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

#include "CatalogueFaults.h"
#include "LocaleName.h"

namespace YResource {

namespace {

using Json = nlohmann::json;

constexpr const char* NEUTRAL_LOCALE = "neutral";
constexpr std::string_view MEMBERS[] = {"domain", "locale", "texts"};
// Far more than any catalogue has, so that reading one takes neither long nor much memory.
constexpr std::size_t MAXIMUM_TEXTS = 100'000;

/// Reads an ID, decimal or hexadecimal after "0x". 0 if it is not an ID.
unsigned ParseID(std::string_view key) {
  const bool isHex = key.starts_with("0x");
  if (isHex) key.remove_prefix(2);
  unsigned id = 0;
  const char* const end = key.data() + key.size();
  const auto [next, error] = std::from_chars(key.data(), end, id, isHex ? 16 : 10);
  const bool isWhole = error == std::errc() && next == end;
  // Only hexadecimal numbers may begin with zeros, because records show them in eight digits.
  return isWhole && (isHex || key.front() != '0') ? id : 0;
}

/// Handles each value as the parser finds it, so that its line is known and only the texts are kept.
class CatalogueReader final : public Json::json_sax_t {
 public:
  CatalogueReader(const std::string& path, std::string text, CatalogueFaults& faults);

  std::optional<Catalogue> Read();

 private:
  bool null() override { return ReadValue(nullptr); }
  bool boolean(bool value) override { return ReadValue(value); }
  bool number_integer(std::int64_t value) override { return ReadValue(value); }
  bool number_unsigned(std::uint64_t value) override { return ReadValue(value); }
  bool number_float(double value, const std::string&) override { return ReadValue(value); }
  bool string(std::string& value) override { return ReadValue(std::move(value)); }
  bool binary(Json::binary_t&) override { return false; }  // JSON has none.
  bool start_object(std::size_t) override { return Enter(Json::object()); }
  bool end_object() override;
  bool start_array(std::size_t) override { return Enter(Json::array()); }
  bool end_array() override { return --mDepth, true; }
  bool key(std::string& key) override;
  bool parse_error(std::size_t, const std::string&, const Json::exception& exception) override;

  bool Enter(const Json& value);
  bool ReadValue(const Json& value);
  void ReadMember(const Json& value);
  void ReadDomain(const Json& value);
  void ReadLocale(const Json& value);
  void ReadText(const Json& value);
  void TakeMemberName(const std::string& name);
  void TakeID(const std::string& key);

  std::size_t GetLine();
  void AddFault(const std::string& reason) { mFaults.Add(mCatalogue.path, GetLine(), reason); }

  // The parser's position in it gives the line.
  std::istringstream mText;
  CatalogueFaults& mFaults;
  Catalogue mCatalogue;
  // The locale in the file's name.
  std::string mLocale;

  // The number of objects and arrays that enclose the parser's position: 1 in the file's object, 2 in its
  // texts.
  std::size_t mDepth = 0;
  std::string mMember;
  std::set<std::string, std::less<>> mMembers;
  bool mbInTexts = false;
  // The ID of the next text. 0 after a key that is not an ID.
  unsigned mID = 0;
  // Also recognises the same ID in two spellings.
  std::map<unsigned, std::size_t> mLinesOfIDs;

  // Counts the members of all objects: a valid catalogue has only its own and those of its texts.
  std::size_t mKeys = 0;

  // The number of line feeds in the characters counted so far, plus one.
  std::streamoff mCounted = 0;
  std::size_t mLine = 1;
};

CatalogueReader::CatalogueReader(const std::string& path, std::string text, CatalogueFaults& faults)
    : mText(std::move(text)), mFaults(faults) {
  const std::string stem = std::filesystem::path(path).stem().string();
  const std::size_t dot = stem.find('.');
  mLocale = dot != std::string::npos ? stem.substr(dot + 1) : NEUTRAL_LOCALE;
  mCatalogue.path = path;
  mCatalogue.name = stem.substr(0, dot);
}

std::optional<Catalogue> CatalogueReader::Read() {
  const std::size_t before = mFaults.GetCount();
  const bool isParsed = Json::sax_parse(mText, static_cast<Json::json_sax_t*>(this));
  // The parser takes the first null character after the catalogue for the end of the file.
  if (isParsed && mText.view().find('\0') != std::string_view::npos) AddFault("has a null character");
  if (mFaults.GetCount() != before) return std::nullopt;
  return std::move(mCatalogue);
}

bool CatalogueReader::Enter(const Json& value) {
  ReadValue(value);
  ++mDepth;
  return true;
}

bool CatalogueReader::end_object() {
  if (--mDepth != 0) return true;
  for (const std::string_view name : MEMBERS) {
    if (!mMembers.contains(name)) {
      mFaults.Add(mCatalogue.path, 0, "has no '" + std::string(name) + "'");
    }
  }
  return true;
}

bool CatalogueReader::key(std::string& key) {
  if (++mKeys > MAXIMUM_TEXTS + std::size(MEMBERS)) {
    AddFault("has more than " + std::to_string(MAXIMUM_TEXTS) + " texts");
    return false;
  }
  if (mDepth == 1) {
    TakeMemberName(key);
  } else if (mDepth == 2 && mbInTexts) {
    TakeID(key);
  }
  return true;
}

bool CatalogueReader::parse_error(std::size_t, const std::string&, const Json::exception& exception) {
  // "[kind] parse error at line 5, column 3: reason", or "[kind] reason".
  const std::string_view text = exception.what();
  const std::size_t colon = text.find(": ");
  AddFault(std::string(text.substr((colon != std::string_view::npos ? colon : text.find("] ")) + 2)));
  return false;
}

bool CatalogueReader::ReadValue(const Json& value) {
  if (mDepth == 0 && !value.is_object()) AddFault("is not an object");
  if (mDepth == 1) ReadMember(value);
  if (mDepth == 2 && mbInTexts) ReadText(value);
  return true;
}

void CatalogueReader::TakeMemberName(const std::string& name) {
  mMember = name;
  mbInTexts = false;
  if (std::find(std::begin(MEMBERS), std::end(MEMBERS), name) == std::end(MEMBERS)) {
    AddFault("unknown member '" + name + "'");
  } else if (!mMembers.insert(name).second) {
    AddFault("member '" + name + "' is there twice");
  }
}

void CatalogueReader::ReadMember(const Json& value) {
  if (mMember == "domain") ReadDomain(value);
  if (mMember == "locale") ReadLocale(value);
  if (mMember == "texts") {
    mbInTexts = value.is_object();
    if (!mbInTexts) AddFault("the texts must be an object");
  }
}

void CatalogueReader::ReadDomain(const Json& value) {
  const std::uint64_t domain = value.is_number_unsigned() ? value.get<std::uint64_t>() : 0;
  if (domain == 0 || domain > UINT32_MAX) {
    return AddFault("the domain must be a number from 1 to 4294967295");
  }
  mCatalogue.domain = static_cast<unsigned>(domain);
}

void CatalogueReader::ReadLocale(const Json& value) {
  if (!value.is_string()) return AddFault("the locale must be a text");
  const auto& locale = value.get_ref<const std::string&>();
  if (locale != mLocale) {
    return AddFault("the locale is '" + locale + "', that of the file's name '" + mLocale + "'");
  }
  if (locale == NEUTRAL_LOCALE) return;
  const auto language = FindLanguageOfItsOwn(locale);
  if (!language) return AddFault("the locale '" + locale + "' has no language identifier");
  mCatalogue.language = *language;
}

void CatalogueReader::TakeID(const std::string& key) {
  mID = ParseID(key);
  if (mID == 0) return AddFault("'" + key + "' is not an ID from 1 to 4294967295, decimal or after 0x");
  const auto [place, isNew] = mLinesOfIDs.emplace(mID, GetLine());
  if (!isNew) AddFault("ID " + key + " is already in line " + std::to_string(place->second));
}

void CatalogueReader::ReadText(const Json& value) {
  if (mID == 0) return;
  const auto* const text = value.get_ptr<const std::string*>();
  if (text == nullptr || text->find('\0') != std::string::npos) {
    return AddFault("the text of ID " + std::to_string(mID) +
                    (text == nullptr ? " is not a text" : " has a null character"));
  }
  // An empty text has not been translated yet.
  if (!text->empty()) mCatalogue.texts.push_back({mID, *text, GetLine()});
}

/// The line of the last character that the parser has read.
std::size_t CatalogueReader::GetLine() {
  const std::streamoff read = mText.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in);
  const std::streamoff last = std::max<std::streamoff>(read - 1, 0);
  const char* const text = mText.view().data();
  // The parser never goes back, so each character is counted once.
  mLine += static_cast<std::size_t>(std::count(text + mCounted, text + last, '\n'));
  mCounted = last;
  return mLine;
}

}  // namespace

std::optional<Catalogue> ReadCatalogue(const std::string& path, std::string text, CatalogueFaults& faults) {
  return CatalogueReader(path, std::move(text), faults).Read();
}

}  // namespace YResource

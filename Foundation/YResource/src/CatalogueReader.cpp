#include "CatalogueReader.h"

#include <json/reader.h>
#include <json/value.h>
#include <utf8.h>

#include <charconv>
#include <exception>
#include <filesystem>
#include <memory>
#include <string_view>

#include "CatalogueFaults.h"
#include "LocaleName.h"

namespace YResource {

namespace {

constexpr const char* NEUTRAL_LOCALE = "neutral";

/// Decimal, or hexadecimal behind "0x"; 0 for what is no ID.
unsigned ReadID(std::string_view key) {
  const bool isHex = key.starts_with("0x");
  if (isHex) key.remove_prefix(2);
  unsigned id = 0;
  const char* const end = key.data() + key.size();
  const auto [next, error] = std::from_chars(key.data(), end, id, isHex ? 16 : 10);
  const bool isWhole = error == std::errc() && next == end;
  // Zeros in front are for hexadecimal numbers, which records show in eight digits.
  return isWhole && (isHex || key.front() != '0') ? id : 0;
}

Json::CharReaderBuilder MakeStrictBuilder() {
  Json::CharReaderBuilder builder;
  Json::CharReaderBuilder::strictMode(&builder.settings_);
  builder["collectComments"] = false;
  // Deeper than any catalogue, and far from what the stack of a thread holds.
  builder["stackLimit"] = 16;
  return builder;
}

/// What the parser says first, "* Line 3, Column 5\n  reason\n...", as line and reason.
std::pair<std::size_t, std::string> SplitFirstError(std::string_view errors) {
  constexpr std::string_view BEFORE_LINE = "* Line ";
  std::size_t line = 1;
  if (errors.starts_with(BEFORE_LINE)) {
    errors.remove_prefix(BEFORE_LINE.size());
    std::from_chars(errors.data(), errors.data() + errors.size(), line);
  }
  const std::size_t begin = errors.find_first_not_of(" \n", errors.find('\n'));
  if (begin == std::string_view::npos) return {line, "cannot be parsed"};
  return {line, std::string(errors.substr(begin, errors.find('\n', begin) - begin))};
}

bool IsValidText(const std::string& text) {
  return utf8::is_valid(text.begin(), text.end()) && text.find('\0') == std::string::npos;
}

}  // namespace

CatalogueReader::CatalogueReader(const std::string& path, const std::string& text, CatalogueFaults& faults)
    : mPath(path), mText(text), mFaults(faults), mLines(text) {
  const std::string stem = std::filesystem::path(path).stem().string();
  const std::size_t dot = stem.find('.');
  mLocale = dot != std::string::npos ? stem.substr(dot + 1) : NEUTRAL_LOCALE;
  mCatalogue.path = path;
  mCatalogue.name = stem.substr(0, dot);
}

std::optional<Catalogue> CatalogueReader::Read() {
  const std::size_t before = mFaults.GetCount();
  Json::Value root;
  if (Parse(root)) ReadMembers(root);
  if (mFaults.GetCount() != before) return std::nullopt;
  return std::move(mCatalogue);
}

bool CatalogueReader::Parse(Json::Value& root) {
  const auto invalid = utf8::find_invalid(mText.begin(), mText.end());
  if (invalid != mText.end()) {
    mFaults.Add(mPath, mLines.GetLine(static_cast<std::size_t>(invalid - mText.begin())), "is not UTF-8");
    return false;
  }
  const std::unique_ptr<Json::CharReader> reader(MakeStrictBuilder().newCharReader());
  std::string errors;
  bool isParsed = false;
  try {
    isParsed = reader->parse(mText.data(), mText.data() + mText.size(), &root, &errors);
  } catch (const Json::Exception&) {
    // The one thing that it throws for.
    mFaults.Add(mPath, "is nested too deeply");
    return false;
  }
  if (!isParsed) {
    const auto [line, reason] = SplitFirstError(errors);
    mFaults.Add(mPath, line, reason);
  }
  return isParsed;
}

void CatalogueReader::ReadMembers(const Json::Value& root) {
  if (!root.isObject()) return mFaults.Add(mPath, 1, "is no object");
  for (const char* name : {"domain", "locale", "texts"}) {
    if (!root.isMember(name)) mFaults.Add(mPath, std::string("has no '") + name + "'");
  }
  for (auto member = root.begin(); member != root.end(); ++member) {
    const std::string name = member.name();
    if (name == "domain") {
      ReadDomain(*member);
    } else if (name == "locale") {
      ReadLocale(*member);
    } else if (name == "texts") {
      ReadTexts(*member);
    } else {
      AddFault(*member, "unknown member '" + name + "'");
    }
  }
}

void CatalogueReader::ReadDomain(const Json::Value& value) {
  const bool isInteger = value.type() == Json::intValue || value.type() == Json::uintValue;
  if (!isInteger || !value.isUInt() || value.asUInt() == 0) {
    return AddFault(value, "the domain must be a number from 1 to 4294967295");
  }
  mCatalogue.domain = value.asUInt();
}

void CatalogueReader::ReadLocale(const Json::Value& value) {
  if (!value.isString()) return AddFault(value, "the locale must be a text");
  const std::string locale = value.asString();
  if (locale != mLocale) {
    return AddFault(value, "the locale is '" + locale + "', that of the file's name '" + mLocale + "'");
  }
  if (locale == NEUTRAL_LOCALE) return;
  const auto language = FindLanguageOfItsOwn(locale);
  if (!language) return AddFault(value, "the locale '" + locale + "' has no language identifier");
  mCatalogue.language = *language;
}

void CatalogueReader::ReadTexts(const Json::Value& value) {
  if (!value.isObject()) return AddFault(value, "the texts must be an object");
  for (auto member = value.begin(); member != value.end(); ++member) ReadText(member.name(), *member);
}

void CatalogueReader::ReadText(const std::string& key, const Json::Value& value) {
  const unsigned id = ReadID(key);
  if (id == 0) return AddFault(value, "'" + key + "' is no ID from 1 to 4294967295, decimal or behind 0x");
  const auto [place, isNew] = mLinesOfIDs.emplace(id, GetLine(value));
  if (!isNew) return AddFault(value, "ID " + key + " is already in line " + std::to_string(place->second));
  if (!value.isString()) return AddFault(value, "the text of ID " + key + " is no text");
  std::string text = value.asString();
  if (!IsValidText(text))
    return AddFault(value, "the text of ID " + key + " has an escape that is no character");
  // An empty one waits to be translated.
  if (!text.empty()) mCatalogue.texts.push_back({id, std::move(text), place->second});
}

std::size_t CatalogueReader::GetLine(const Json::Value& value) const {
  return mLines.GetLine(static_cast<std::size_t>(value.getOffsetStart()));
}

void CatalogueReader::AddFault(const Json::Value& value, const std::string& reason) {
  mFaults.Add(mPath, GetLine(value), reason);
}

}  // namespace YResource

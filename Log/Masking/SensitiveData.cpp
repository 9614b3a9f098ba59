#include <YLog/SensitiveData.h>

#include <cassert>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <YBase/NeverDestroyed.h>
#include <YBase/NullText.h>
#include <YBase/TextConversion.h>
#include <YSynch/CriticalSection.h>

#include "Masking/DoubleQuote.h"

namespace YLog {

const char* const REST_TAG_PASSWORD = "password";

namespace {

constexpr std::size_t NOT_FOUND = std::string_view::npos;

constinit YBase::NeverDestroyed<YSynch::CriticalSection> gsLock(YSynch::LOCK_STACK_CATEGORY_CLASS);
// The names of JSON members to mask, each in its quotes.
constinit YBase::NeverDestroyed<std::vector<std::string>> gsHTTPSensitiveTagVector YSYNCH_GUARDED_BY(*gsLock);

void AppendTag() YSYNCH_REQUIRES(*gsLock) {
  gsHTTPSensitiveTagVector->push_back('"' + std::string(REST_TAG_PASSWORD) + '"');
}

/// A copy, so that the lock is not held while texts are searched.
std::vector<std::string> GetTags() {
  const YSynch::CriticalSection::SmartLock lock(*gsLock);
  if (gsHTTPSensitiveTagVector->empty()) AppendTag();
  return *gsHTTPSensitiveTagVector;
}

/// The position of a value: from its first character to the double quote that ends it.
struct POSITION {
  std::size_t start;
  std::size_t end;
};

constexpr POSITION NO_VALUE{NOT_FOUND, NOT_FOUND};

/// Not `std::string_view::find`, which takes time proportional to the product of both lengths if the text
/// repeats the beginning of the pattern.
std::size_t Find(std::string_view text, std::string_view pattern, std::size_t start) noexcept {
  const void* found = ::memmem(text.data() + start, text.size() - start, pattern.data(), pattern.size());
  return found == nullptr ? NOT_FOUND
                          : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

POSITION FindAttributeValue(std::string_view text, std::string_view pattern, std::size_t offset) noexcept {
  const std::size_t name = Find(text, pattern, offset);
  if (name == NOT_FOUND) return NO_VALUE;
  const std::size_t start = name + pattern.size();
  return {start, text.find('"', start)};
}

POSITION FindJSONValue(std::string_view text, std::string_view pattern, std::size_t offset) noexcept {
  const std::size_t name = Find(text, pattern, offset);
  if (name == NOT_FOUND) return NO_VALUE;
  const std::size_t colon = text.find(':', name + pattern.size());
  if (colon == NOT_FOUND) return NO_VALUE;
  const std::size_t openingQuote = text.find('"', colon);
  if (openingQuote == NOT_FOUND) return NO_VALUE;
  return {openingQuote + 1, hFindFirstDoubleQuote(text, openingQuote + 1)};
}

/// Copies the text with every value that `findValue` finds replaced. Replacing inside the text would move all
/// that follows once for each value.
template <class FindValue>
std::string ReplaceValues(std::string_view text, std::string_view pattern, std::string_view replacement,
                          FindValue findValue) {
  std::string result;
  result.reserve(text.size());
  std::size_t copied = 0;
  for (POSITION value = findValue(text, pattern, 0); value.end != NOT_FOUND;
       value = findValue(text, pattern, value.end + 1)) {
    result.append(text.substr(copied, value.start - copied)).append(replacement);
    copied = value.end;
  }
  return result.append(text.substr(copied));
}

}  // namespace

YBase::ReturnString ReplaceSensitiveMessage(const char* text, const char* tagName, const char* replacement) {
  assert(text != nullptr);
  assert(tagName != nullptr);
  if (text == nullptr || tagName == nullptr) return {};
  const std::string pattern = ' ' + std::string(tagName) + "=\"";
  return ReplaceValues(text, pattern, YBase::EmptyIfNull(replacement), FindAttributeValue);
}

YBase::ReturnString ReplaceSensitiveMessage(const wchar_t* text, const char* tagName,
                                            const char* replacement) {
  assert(text != nullptr);
  if (text == nullptr) return {};
  return ReplaceSensitiveMessage(YBase::WideCharToUTF8(text).c_str(), tagName, replacement);
}

YBase::ReturnString ReplaceSensitiveMessageInHTTP(const char* text) {
  assert(text != nullptr);
  if (text == nullptr) return {};
  std::string result;
  std::string_view unmasked = text;
  for (const std::string& tag : GetTags()) {
    result = ReplaceValues(unmasked, tag, "***", FindJSONValue);
    unmasked = result;
  }
  return result;
}

void InitHTTPSensitiveTagVector() {
  const YSynch::CriticalSection::SmartLock lock(*gsLock);
  AppendTag();
}

}  // namespace YLog

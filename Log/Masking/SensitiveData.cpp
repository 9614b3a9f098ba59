#include <YLog/SensitiveData.h>

#include <atomic>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <YBase/TextConversion.h>

#include "Masking/DoubleQuote.h"

namespace YLog {

const char* const REST_TAG_PASSWORD = "password";

namespace {

constexpr std::size_t NOT_FOUND = std::string_view::npos;

/// The name of a JSON member to mask. A tag is only ever appended to the list and never destroyed, so that
/// the list is read without a lock: nothing that a fork could leave locked, and nothing that is gone when
/// threads still mask while the process exits.
struct SensitiveTag {
  explicit SensitiveTag(const char* name) : pattern('"' + std::string(name) + '"') {}

  /// The name in its quotes.
  const std::string pattern;
  std::atomic<SensitiveTag*> next{nullptr};
};

// Release where a tag is appended, acquire where it is read: a reader sees only complete tags.
constinit std::atomic<SensitiveTag*> gsHTTPSensitiveTagVector{nullptr};

/// Puts the tag into a place of the list if that is empty. Returns the tag that is there now.
SensitiveTag* PutIfEmpty(std::atomic<SensitiveTag*>& place, SensitiveTag* tag) noexcept {
  SensitiveTag* present = nullptr;
  return place.compare_exchange_strong(present, tag, std::memory_order_acq_rel) ? tag : present;
}

/// Several threads may find the list empty at once: one tag is added, the others are destroyed.
const SensitiveTag* GetFirstTag() {
  const SensitiveTag* first = gsHTTPSensitiveTagVector.load(std::memory_order_acquire);
  if (first != nullptr) return first;
  auto tag = std::make_unique<SensitiveTag>(REST_TAG_PASSWORD);
  first = PutIfEmpty(gsHTTPSensitiveTagVector, tag.get());
  if (first == tag.get()) static_cast<void>(tag.release());
  return first;
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
  return ReplaceValues(text, pattern, replacement != nullptr ? replacement : "", FindAttributeValue);
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
  for (const SensitiveTag* tag = GetFirstTag(); tag != nullptr;
       tag = tag->next.load(std::memory_order_acquire)) {
    result = ReplaceValues(unmasked, tag->pattern, "***", FindJSONValue);
    unmasked = result;
  }
  return result;
}

void InitHTTPSensitiveTagVector() {
  auto* const tag = new SensitiveTag(REST_TAG_PASSWORD);
  SensitiveTag* present = PutIfEmpty(gsHTTPSensitiveTagVector, tag);
  while (present != tag) present = PutIfEmpty(present->next, tag);
}

}  // namespace YLog

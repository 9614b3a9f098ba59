#include <YBase/TextConversion.h>
#include <YResource/MessageFormatter.h>

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

#include "Place.h"

namespace YResource {

namespace {

// Room for any number; the longest shortest texts are those of `long double`, and have half of that.
using NumberStorage = char[64];

template <class Number>
std::string_view ToShortestText(NumberStorage& storage, Number number) noexcept {
  const auto [end, error] = std::to_chars(storage, storage + sizeof storage, number);
  return {storage, static_cast<std::size_t>(end - storage)};
}

std::string_view ToDecimalText(NumberStorage& storage, unsigned long long magnitude, bool negative) noexcept {
  storage[0] = '-';
  const auto [end, error] = std::to_chars(storage + 1, storage + sizeof storage, magnitude);
  const char* const begin = negative ? storage : storage + 1;
  return {begin, static_cast<std::size_t>(end - begin)};
}

std::string_view ToHexText(NumberStorage& storage, unsigned long long value, int minimumDigits,
                           std::string_view prefix) noexcept {
  // Written from its end, where the last digit stands.
  char* const end = storage + sizeof storage;
  char* begin = end;
  for (; value != 0 || end - begin < minimumDigits; value /= 16) *--begin = "0123456789ABCDEF"[value % 16];
  begin -= prefix.size();
  prefix.copy(begin, prefix.size());
  return {begin, static_cast<std::size_t>(end - begin)};
}

std::string_view ToWideHexText(NumberStorage& storage, unsigned long long value) noexcept {
  return ToHexText(storage, value, 8, "0x");
}

/// The argument of a number from 1 on, out of texts that each follow their length.
std::optional<std::string_view> FindArgument(std::string_view arguments, std::size_t number) noexcept {
  while (!arguments.empty()) {
    std::size_t length;
    std::memcpy(&length, arguments.data(), sizeof length);
    arguments.remove_prefix(sizeof length);
    if (--number == 0) return arguments.substr(0, length);
    arguments.remove_prefix(length);
  }
  return std::nullopt;
}

/// Appends what the percent sign at the beginning of `rest` stands for. Returns how much of it that took.
std::size_t AppendPlace(std::string_view rest, std::string_view arguments, FormattedText& text) {
  if (rest.starts_with("%%")) {
    text.Append('%');
    return 2;
  }
  const Place place = ReadPlace(rest);
  const auto argument = place.number > 0 ? FindArgument(arguments, place.number) : std::nullopt;
  text.Append(argument.value_or(rest.substr(0, place.length)));
  return place.length;
}

}  // namespace

MessageFormatter& MessageFormatter::operator<<(const char* text) {
  return AddArgument(text != nullptr ? std::string_view(text) : std::string_view());
}

MessageFormatter& MessageFormatter::operator<<(const wchar_t* text) {
  return *this << (text != nullptr ? std::wstring_view(text) : std::wstring_view());
}

MessageFormatter& MessageFormatter::operator<<(std::string_view text) {
  return AddArgument(text);
}

MessageFormatter& MessageFormatter::operator<<(std::wstring_view text) {
  YBase::TextBuffer<512> utf8Text;
  char storage[4];
  for (const wchar_t character : text) utf8Text.Append(YBase::EncodeUTF8(character, storage));
  return AddArgument(utf8Text.View());
}

MessageFormatter& MessageFormatter::operator<<(char character) {
  return AddArgument({&character, 1});
}

MessageFormatter& MessageFormatter::operator<<(wchar_t character) {
  char storage[4];
  return AddArgument(YBase::EncodeUTF8(character, storage));
}

MessageFormatter& MessageFormatter::operator<<(bool value) {
  return AddArgument(value ? "true" : "false");
}

MessageFormatter& MessageFormatter::operator<<(float value) {
  NumberStorage storage;
  return AddArgument(ToShortestText(storage, value));
}

MessageFormatter& MessageFormatter::operator<<(double value) {
  NumberStorage storage;
  return AddArgument(ToShortestText(storage, value));
}

MessageFormatter& MessageFormatter::operator<<(long double value) {
  NumberStorage storage;
  return AddArgument(ToShortestText(storage, value));
}

MessageFormatter& MessageFormatter::operator<<(const void* address) {
  NumberStorage storage;
  return AddArgument(ToWideHexText(storage, reinterpret_cast<std::uintptr_t>(address)));
}

MessageFormatter& MessageFormatter::AddInteger(unsigned long long bits, unsigned long long magnitude,
                                               bool negative) {
  NumberStorage storage;
  switch (mIntegerForm) {
    case IntegerForm::HEX:
      return AddArgument(ToHexText(storage, bits, 1, ""));
    case IntegerForm::WIDE_HEX:
      return AddArgument(ToWideHexText(storage, bits));
    case IntegerForm::DECIMAL:
      break;
  }
  return AddArgument(ToDecimalText(storage, magnitude, negative));
}

MessageFormatter& MessageFormatter::AddArgument(std::string_view text) {
  const std::size_t length = text.size();
  char lengthBytes[sizeof length];
  std::memcpy(lengthBytes, &length, sizeof length);
  // First, so that memory cannot run out between the two halves of an argument.
  mArguments.Reserve(sizeof length + length);
  mArguments.Append({lengthBytes, sizeof length});
  mArguments.Append(text);
  return *this;
}

YBase::ReturnString MessageFormatter::Format(const MessageTemplate& messageTemplate) {
  FormattedText text;
  Format(messageTemplate.GetText(), text);
  return YBase::ReturnString(text.View());
}

void MessageFormatter::Format(std::string_view messageTemplate, FormattedText& text) {
  while (true) {
    const std::size_t percentSign = messageTemplate.find('%');
    text.Append(messageTemplate.substr(0, percentSign));
    if (percentSign == std::string_view::npos) break;
    messageTemplate.remove_prefix(percentSign);
    messageTemplate.remove_prefix(AppendPlace(messageTemplate, mArguments.View(), text));
  }
  mArguments.Clear();
}

MessageFormatter GetMessageFormatter() {
  return {};
}

}  // namespace YResource

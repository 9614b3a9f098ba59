#include <YBase/NullText.h>
#include <YBase/NumberText.h>
#include <YBase/TextConversion.h>
#include <YResource/MessageFormatter.h>

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

#include "Placeholder.h"

namespace YResource {

namespace {

// Room for any number: even the shortest exact text of a `long double` needs at most half of it.
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

/// The argument with this number, from 1 on. Each argument is stored as its length followed by its text.
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

/// Appends what the percent sign at the beginning of `rest` means. Returns how many characters were used.
std::size_t AppendPlaceholder(std::string_view rest, std::string_view arguments, FormattedText& text) {
  if (rest.starts_with("%%")) {
    text.Append('%');
    return 2;
  }
  const Placeholder placeholder = ReadPlaceholder(rest);
  const auto argument = placeholder.number > 0 ? FindArgument(arguments, placeholder.number) : std::nullopt;
  text.Append(argument.value_or(rest.substr(0, placeholder.length)));
  return placeholder.length;
}

}  // namespace

MessageFormatter& MessageFormatter::operator<<(const char* text) {
  return AddArgument(YBase::EmptyIfNull(text));
}

MessageFormatter& MessageFormatter::operator<<(const wchar_t* text) {
  return *this << std::wstring_view(YBase::EmptyIfNull(text));
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
  return AddWideHex(reinterpret_cast<std::uintptr_t>(address));
}

MessageFormatter& MessageFormatter::AddInteger(unsigned long long bits, unsigned long long magnitude,
                                               bool negative) {
  if (mIntegerForm == IntegerForm::WIDE_HEX) return AddWideHex(bits);
  if (mIntegerForm == IntegerForm::HEX) {
    char digits[16];
    return AddArgument(YBase::ToHexText(digits, bits, 1));
  }
  NumberStorage storage;
  return AddArgument(ToDecimalText(storage, magnitude, negative));
}

MessageFormatter& MessageFormatter::AddWideHex(unsigned long long value) {
  char digits[16];
  YBase::TextBuffer<2 + sizeof digits> text;
  text.Append("0x");
  text.Append(YBase::ToHexText(digits, value, 8));
  return AddArgument(text.View());
}

MessageFormatter& MessageFormatter::AddArgument(std::string_view text) {
  const std::size_t length = text.size();
  char lengthBytes[sizeof length];
  std::memcpy(lengthBytes, &length, sizeof length);
  // Reserved first, so that memory cannot run out between the two parts of an argument.
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
    messageTemplate.remove_prefix(AppendPlaceholder(messageTemplate, mArguments.View(), text));
  }
  mArguments.Clear();
}

MessageFormatter GetMessageFormatter() {
  return {};
}

}  // namespace YResource

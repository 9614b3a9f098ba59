#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YBase/NullText.h>
#include <YBase/NumberText.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

namespace YBase {

ReturnString ToDecimalString(long long value) {
  return std::to_string(value);
}

std::string_view ToHexText(char (&storage)[16], unsigned long long value, int minimumDigits) noexcept {
  char* const end = storage + sizeof storage;
  char* begin = end;
  for (; value != 0 || end - begin < minimumDigits; value /= 16) *--begin = "0123456789ABCDEF"[value % 16];
  return {begin, static_cast<std::size_t>(end - begin)};
}

int DecimalToInt(const char* text) noexcept {
  text = EmptyIfNull(text);
  while (*text == ' ' || *text == '\t') ++text;
  const bool negative = *text == '-';
  if (negative || *text == '+') ++text;

  // One past the largest int is the magnitude of the smallest.
  constexpr long long LIMIT = std::numeric_limits<int>::max() + 1LL;
  long long magnitude = 0;
  for (; *text >= '0' && *text <= '9'; ++text) magnitude = std::min(magnitude * 10 + (*text - '0'), LIMIT);
  return static_cast<int>(negative ? -magnitude : std::min(magnitude, LIMIT - 1));
}

unsigned HexToUnsignedInt(const char* text, bool throwOnError) {
  static constexpr const char* FUNCTION_NAME = "YBase::HexToUnsignedInt";
  text = EmptyIfNull(text);
  const char* const end = text + std::strlen(text);
  unsigned value = 0;
  const auto [stop, error] = std::from_chars(text, end, value, 16);
  if (throwOnError && (error != std::errc{} || stop != end)) {
    const std::string description = std::string(": '") + text + "' is no hexadecimal number of 32 bits";
    throw ExceptionImpl<Message>((FUNCTION_NAME + description).c_str());
  }
  return error == std::errc::result_out_of_range ? std::numeric_limits<unsigned>::max() : value;
}

}  // namespace YBase

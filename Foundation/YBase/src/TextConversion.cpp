#include <YBase/NullText.h>
#include <YBase/TextConversion.h>
#include <utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <iterator>

namespace YBase {

namespace {

static_assert(sizeof(wchar_t) == sizeof(char32_t), "wide characters are taken for code points");

constexpr char32_t REPLACEMENT_CHARACTER = 0xFFFD;

char32_t ToScalarValue(wchar_t character) noexcept {
  const auto codePoint = static_cast<char32_t>(character);
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return surrogate || codePoint > 0x10FFFF ? REPLACEMENT_CHARACTER : codePoint;
}

bool IsBetween(char byte, unsigned low, unsigned high) noexcept {
  const auto value = static_cast<unsigned char>(byte);
  return value >= low && value <= high;
}

/// How many bytes one U+FFFD replaces at `text`, where no well-formed character begins: as many as could
/// begin one, and at least one. utf8::replace_invalid differs: it skips all continuation bytes that follow.
std::ptrdiff_t GetLengthOfMaximalSubpart(const char* text, const char* end) noexcept {
  if (!IsBetween(*text, 0xC2, 0xF4) || end - text < 2) return 1;
  const auto lead = static_cast<unsigned char>(*text);
  // After these four lead bytes fewer second bytes are allowed: others would be overlong, a surrogate, or
  // past U+10FFFF.
  const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (!IsBetween(text[1], low, high)) return 1;
  const std::ptrdiff_t wellFormedLength = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  const std::ptrdiff_t limit = std::min(wellFormedLength, end - text);
  std::ptrdiff_t length = 2;
  while (length < limit && IsBetween(text[length], 0x80, 0xBF)) ++length;
  return length;
}

}  // namespace

std::string_view EncodeUTF8(wchar_t character, char (&storage)[4]) noexcept {
  const char* end = utf8::unchecked::append(ToScalarValue(character), storage);
  return {storage, static_cast<std::size_t>(end - storage)};
}

ReturnString WideCharToUTF8(const wchar_t* text) {
  ReturnString result;
  text = EmptyIfNull(text);
  result.reserve(std::wcslen(text));
  char storage[4];
  for (; *text != L'\0'; ++text) result += EncodeUTF8(*text, storage);
  return result;
}

ReturnWString UTF8ToWideChar(const char* text) {
  ReturnWString result;
  text = EmptyIfNull(text);
  const char* const end = text + std::strlen(text);
  result.reserve(static_cast<std::size_t>(end - text));
  while (true) {
    const char* const invalid = utf8::find_invalid(text, end);
    utf8::unchecked::utf8to32(text, invalid, std::back_inserter(result));
    if (invalid == end) return result;
    result.push_back(static_cast<wchar_t>(REPLACEMENT_CHARACTER));
    text = invalid + GetLengthOfMaximalSubpart(invalid, end);
  }
}

}  // namespace YBase

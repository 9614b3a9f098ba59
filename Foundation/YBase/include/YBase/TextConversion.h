#pragma once

#include <string_view>

#include <YBase/Export.h>
#include <YBase/ReturnString.h>

namespace YBase {

/// What begins a UTF-8 text file: U+FEFF in UTF-8 (RFC 3629, section 6).
inline constexpr const char* UNICODE_BYTE_ORDER_MARK = "\xEF\xBB\xBF";

/// UTF-8 (RFC 3629) from wide characters, each a Unicode code point.
///
/// Null is the empty text. What is no Unicode scalar value (a surrogate, a value past U+10FFFF) becomes
/// U+FFFD; the conversion never fails for what the text holds.
YBASE_EXPORT ReturnString WideCharToUTF8(const wchar_t* text);

/// The same for a single character, for those who must not allocate: at most four bytes, in `storage`.
YBASE_EXPORT std::string_view EncodeUTF8(wchar_t character, char (&storage)[4]) noexcept;

/// Wide characters from UTF-8.
///
/// Null is the empty text. Each maximal part of an ill-formed sequence becomes one U+FFFD (Unicode 15,
/// section 3.9, "U+FFFD Substitution of Maximal Subparts"); the conversion never fails for what it reads.
YBASE_EXPORT ReturnWString UTF8ToWideChar(const char* text);

}  // namespace YBase

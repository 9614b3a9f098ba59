#pragma once

#include <string_view>

#include <YBase/Export.h>
#include <YBase/ReturnString.h>

namespace YBase {

/// The byte order mark at the beginning of a UTF-8 text file: U+FEFF in UTF-8 (RFC 3629, section 6).
inline constexpr const char* UNICODE_BYTE_ORDER_MARK = "\xEF\xBB\xBF";

/// Converts wide characters, each a Unicode code point, to UTF-8 (RFC 3629).
///
/// Null is the empty text. A character that is not a Unicode scalar value (a surrogate, a value above
/// U+10FFFF) becomes U+FFFD; whatever the text contains, the conversion does not fail for it.
YBASE_EXPORT ReturnString WideCharToUTF8(const wchar_t* text);

/// The same for a single character, without allocating: at most four bytes, in `storage`.
YBASE_EXPORT std::string_view EncodeUTF8(wchar_t character, char (&storage)[4]) noexcept;

/// Converts UTF-8 to wide characters.
///
/// Null is the empty text. Each maximal part of an ill-formed sequence becomes one U+FFFD (Unicode 15,
/// section 3.9, "U+FFFD Substitution of Maximal Subparts"); whatever the text contains, the conversion does
/// not fail for it.
YBASE_EXPORT ReturnWString UTF8ToWideChar(const char* text);

}  // namespace YBase

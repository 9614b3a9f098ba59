#pragma once

#include <YBase/ReturnString.h>

namespace YBase {

/// Converts wide characters to ASCII. Null is the empty text.
///
/// Failure: a character above U+007F throws `ExceptionImpl<Message>`.
ReturnString WideCharToASCII(const wchar_t* text);

}  // namespace YBase

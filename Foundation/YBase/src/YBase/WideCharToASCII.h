#pragma once

#include <YBase/ReturnString.h>

namespace YBase {

/// ASCII from wide characters. Null is the empty text.
///
/// Failure: a character past U+007F throws `ExceptionImpl<Message>`.
ReturnString WideCharToASCII(const wchar_t* text);

}  // namespace YBase

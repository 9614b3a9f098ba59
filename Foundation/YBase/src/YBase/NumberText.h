#pragma once

#include <string_view>

#include <YBase/ReturnString.h>

namespace YBase {

/// The decimal digits of a number, with "-" before a negative one.
ReturnString ToDecimalString(long long value);

/// The number in upper-case hexadecimal digits, at least so many. They are at the end of `storage`, for
/// callers that must not allocate.
std::string_view ToHexText(char (&storage)[16], unsigned long long value, int minimumDigits) noexcept;

/// Reads a decimal number: leading blanks are skipped, one sign is allowed, and digits are read up to the
/// first other character. A number past the limits of `int` gives the limit; nothing readable gives 0.
/// Null is read as an empty text.
int DecimalToInt(const char* text) noexcept;

/// Reads a hexadecimal number without prefix, in digits of either case, up to the first other character.
/// A number past 0xFFFFFFFF gives 0xFFFFFFFF; nothing readable gives 0. Null is read as an empty text.
///
/// Failure: with `throwOnError`, a text that is not wholly such a number, or too large, throws
/// `ExceptionImpl<Message>`; without, nothing is thrown.
unsigned HexToUnsignedInt(const char* text, bool throwOnError);

}  // namespace YBase

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
/// first other character. A number beyond the limits of `int` becomes the nearest limit; without digits the
/// result is 0. Null is treated as an empty text.
int DecimalToInt(const char* text) noexcept;

/// Reads a hexadecimal number without prefix, in digits of either case, up to the first other character. A
/// number above 0xFFFFFFFF becomes 0xFFFFFFFF; without digits the result is 0. Null is treated as an empty
/// text.
///
/// Failure: with `throwOnError`, a text that is anything but such a number, or a number that is too large,
/// throws `ExceptionImpl<Message>`; otherwise nothing is thrown.
unsigned HexToUnsignedInt(const char* text, bool throwOnError);

}  // namespace YBase

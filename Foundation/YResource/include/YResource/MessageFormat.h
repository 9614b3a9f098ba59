#pragma once

#include <YResource/Export.h>
#include <YResource/MessageFormatter.h>

/// Manipulators of a `MessageFormatter`: how the numbers behind them are shown, until the next one.
namespace YResource::MessageFormat {

/// Decimal digits, "-" before a negative number. This is how a formatter begins.
YRESOURCE_EXPORT MessageFormatter& Dec(MessageFormatter& formatter);
/// Upper-case hexadecimal digits alone.
YRESOURCE_EXPORT MessageFormatter& Hex(MessageFormatter& formatter);
/// "0x" and at least eight upper-case hexadecimal digits.
YRESOURCE_EXPORT MessageFormatter& WideHex(MessageFormatter& formatter);

}  // namespace YResource::MessageFormat

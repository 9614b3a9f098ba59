#pragma once

#include <YResource/Export.h>
#include <YResource/MessageFormatter.h>

/// Manipulators of a `MessageFormatter`: each determines how the numbers after it are shown, up to the next
/// one.
namespace YResource::MessageFormat {

/// Decimal digits, with "-" before a negative number. A formatter begins with this form.
YRESOURCE_EXPORT MessageFormatter& Dec(MessageFormatter& formatter);
/// Upper-case hexadecimal digits without a prefix.
YRESOURCE_EXPORT MessageFormatter& Hex(MessageFormatter& formatter);
/// "0x" and at least eight upper-case hexadecimal digits.
YRESOURCE_EXPORT MessageFormatter& WideHex(MessageFormatter& formatter);

}  // namespace YResource::MessageFormat

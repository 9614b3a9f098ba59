#pragma once

#include <YLog/Export.h>
#include <YResource/MessageFormat.h>

/// The manipulators of `YResource::MessageFormat` under names of this library:
///
///     formatter << YLog::Format::WideHex << status << YLog::Format::Dec << duration;
namespace YLog::Format {

// NOLINTBEGIN(readability-identifier-naming): named like the functions that they point to.
YLOG_EXPORT extern const YResource::MessageManipulator Dec;
/// The same as `Dec`: decimal digits have no wide form.
YLOG_EXPORT extern const YResource::MessageManipulator WideDec;
YLOG_EXPORT extern const YResource::MessageManipulator Hex;
YLOG_EXPORT extern const YResource::MessageManipulator WideHex;
// NOLINTEND(readability-identifier-naming)

}  // namespace YLog::Format

#include <YLog/Format.h>

namespace YLog::Format {

// NOLINTBEGIN(readability-identifier-naming): as where they are declared.
constinit const YResource::MessageManipulator Dec = &YResource::MessageFormat::Dec;
constinit const YResource::MessageManipulator WideDec = &YResource::MessageFormat::Dec;
constinit const YResource::MessageManipulator Hex = &YResource::MessageFormat::Hex;
constinit const YResource::MessageManipulator WideHex = &YResource::MessageFormat::WideHex;
// NOLINTEND(readability-identifier-naming)

}  // namespace YLog::Format

#include <YLog/Format.h>

namespace YLog::Format {

constinit const YResource::MessageManipulator Dec = &YResource::MessageFormat::Dec;
constinit const YResource::MessageManipulator WideDec = &YResource::MessageFormat::Dec;
constinit const YResource::MessageManipulator Hex = &YResource::MessageFormat::Hex;
constinit const YResource::MessageManipulator WideHex = &YResource::MessageFormat::WideHex;

}  // namespace YLog::Format

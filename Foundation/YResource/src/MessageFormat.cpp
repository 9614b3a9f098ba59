#include <YResource/MessageFormat.h>

namespace YResource::MessageFormat {

MessageFormatter& Dec(MessageFormatter& formatter) {
  formatter.SetIntegerForm(MessageFormatter::IntegerForm::DECIMAL);
  return formatter;
}

MessageFormatter& Hex(MessageFormatter& formatter) {
  formatter.SetIntegerForm(MessageFormatter::IntegerForm::HEX);
  return formatter;
}

MessageFormatter& WideHex(MessageFormatter& formatter) {
  formatter.SetIntegerForm(MessageFormatter::IntegerForm::WIDE_HEX);
  return formatter;
}

}  // namespace YResource::MessageFormat

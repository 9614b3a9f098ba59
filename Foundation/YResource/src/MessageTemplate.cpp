#include <YResource/MessageTemplate.h>

namespace YResource {

MessageTemplate GetMessageTemplate(const char* text) {
  return MessageTemplate(text != nullptr ? text : "");
}

}  // namespace YResource

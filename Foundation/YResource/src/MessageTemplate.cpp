#include <YBase/NullText.h>
#include <YResource/MessageTemplate.h>

namespace YResource {

MessageTemplate GetMessageTemplate(const char* text) {
  return MessageTemplate(YBase::EmptyIfNull(text));
}

}  // namespace YResource

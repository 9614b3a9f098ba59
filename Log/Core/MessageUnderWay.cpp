#include "Core/MessageUnderWay.h"

#include <YLog/ThreadContext.h>

#include "ModuleMain.h"

namespace YLog {

namespace {

/// How many messages the calling thread is logging: each but the first is logged by a destination of the one
/// before.
constinit thread_local unsigned sMessagesUnderWay = 0;

}  // namespace

MessageUnderWay::MessageUnderWay()
    : mbOutermost(sMessagesUnderWay == 0), mpHeader(gModuleMainPtr->GetThreadContext()->GetMessageHeader()) {
  if (!mbOutermost) mpHeader = CopyMessageHeader(*mpHeader);
  ++sMessagesUnderWay;
}

MessageUnderWay::~MessageUnderWay() {
  --sMessagesUnderWay;
}

MessageBody& MessageUnderWay::GetBody() {
  if (!mpBody) {
    mpBody = mbOutermost ? YBase::SmartPtrI<MessageBody>(gModuleMainPtr->GetThreadContext()->GetMessageBody())
                         : CreateMessageBody();
  }
  return *mpBody;
}

}  // namespace YLog

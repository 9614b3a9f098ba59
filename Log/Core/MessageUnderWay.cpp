#include "Core/MessageUnderWay.h"

#include <YLog/ThreadContext.h>

#include "ModuleMain.h"

namespace YLog {

namespace {

/// How many messages of the calling thread are under way, each but the first logged by a destination of the
/// one before.
constinit thread_local unsigned sMessagesUnderWay = 0;

YBase::SmartPtrI<MessageHeader> CreateHeaderLike(const MessageHeader& outer) {
  YBase::SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetComputerName(outer.GetComputerName());
  header->SetProcessID(outer.GetProcessID());
  header->SetThreadID(outer.GetThreadID());
  header->SetUserID(outer.GetUserID());
  header->SetSessionID(outer.GetSessionID());
  header->SetObjectID(outer.GetObjectID());
  return header;
}

}  // namespace

MessageUnderWay::MessageUnderWay()
    : mbOutermost(sMessagesUnderWay == 0), mpHeader(gModuleMainPtr->GetThreadContext()->GetMessageHeader()) {
  if (!mbOutermost) mpHeader = CreateHeaderLike(*mpHeader);
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

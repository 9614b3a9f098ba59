#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/MessageBody.h>
#include <YLog/MessageHeader.h>

namespace YLog {

/// A message on its way to the destinations, and the header and body for it.
///
/// They are those of the calling thread. While those are taken by a message under way, whose destination has
/// logged another one, the other one gets a header and a body of its own, for the same thread and the same
/// user, session and object.
///
/// Threads: created, used and destroyed by one.
class MessageUnderWay {
 public:
  MessageUnderWay();
  ~MessageUnderWay();
  MessageUnderWay(const MessageUnderWay&) = delete;
  MessageUnderWay& operator=(const MessageUnderWay&) = delete;

  MessageHeader& GetHeader() const { return *mpHeader; }

  /// Failure: `std::bad_alloc`, at the first call.
  MessageBody& GetBody();

 private:
  const bool mbOutermost;
  YBase::SmartPtrI<MessageHeader> mpHeader;
  // Null until it is asked for: most messages are ready texts.
  YBase::SmartPtrI<MessageBody> mpBody;
};

}  // namespace YLog

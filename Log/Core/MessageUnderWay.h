#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/MessageBody.h>
#include <YLog/MessageHeader.h>

namespace YLog {

/// A message that is being passed to the destinations, with its header and body.
///
/// They belong to the calling thread. If a destination logs another message while they are in use, the other
/// message has its own header, a copy, and its own body.
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
  // Null until it is needed: most messages are plain texts.
  YBase::SmartPtrI<MessageBody> mpBody;
};

}  // namespace YLog

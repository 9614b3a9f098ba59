#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/MessageHeader.h>

namespace YLog {

/// A message on its way to the destinations, and the header for it.
///
/// The header is that of the calling thread. While that is taken by a message under way, whose destination
/// has logged another one, the other one gets a header of its own, for the same thread and the same user,
/// session and object.
///
/// Threads: created, used and destroyed by one.
class MessageUnderWay {
 public:
  MessageUnderWay();
  ~MessageUnderWay();
  MessageUnderWay(const MessageUnderWay&) = delete;
  MessageUnderWay& operator=(const MessageUnderWay&) = delete;

  MessageHeader& GetHeader() const { return *mpHeader; }

 private:
  YBase::SmartPtrI<MessageHeader> mpHeader;
};

}  // namespace YLog

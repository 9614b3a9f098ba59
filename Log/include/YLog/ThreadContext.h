#pragma once

#include <YLog/Export.h>
#include <YSynch/ThreadContext.h>

namespace YLog {

class MessageBody;
class MessageHeader;

/// What the library keeps for a thread from one message to the next: its header, its body and its episode
/// number.
///
/// Ownership: belongs to the library, which destroys it when the thread ends or when the library stops.
///
/// Threads: may be used only by the thread that it belongs to.
class YLOG_EXPORT ThreadContext : public YSynch::ThreadContext {
 public:
  /// The thread's header; no reference is added.
  virtual MessageHeader* GetMessageHeader() = 0;
  /// The thread's body; no reference is added. The first call creates it.
  ///
  /// Failure: `std::bad_alloc`, at the first call.
  virtual MessageBody* GetMessageBody() = 0;
  /// For reading and writing.
  virtual unsigned long long& GetEpisodeNumber() = 0;

 protected:
  ~ThreadContext() override;
};

}  // namespace YLog

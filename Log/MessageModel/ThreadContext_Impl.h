#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/MessageBody.h>
#include <YLog/MessageHeader.h>
#include <YLog/ThreadContext.h>

namespace YLog {

/// \pre Created, used and disposed of while the module is started.
class ThreadContext_Impl final : public ThreadContext {
 public:
  /// For the calling thread.
  ThreadContext_Impl();
  void Delete() override;

  MessageHeader* GetMessageHeader() override { return mpMessageHeader.Get(); }
  MessageBody* GetMessageBody() override;
  unsigned long long& GetEpisodeNumber() override { return mEpisodeNumber; }

  /// To be called in a child process, for the thread that forked. Neither allocates nor locks.
  void TakeOverAfterFork() noexcept;

 private:
  ~ThreadContext_Impl() override = default;

  const YBase::SmartPtrI<MessageHeader> mpMessageHeader;
  YBase::SmartPtrI<MessageBody> mpMessageBody;
  unsigned long long mEpisodeNumber = 0;
};

}  // namespace YLog

#pragma once

#include <atomic>
#include <string>

#include <YLog/Destination_SystemLog.h>
#include <YSynch/CriticalSection.h>
#include <YSynch/RWLock.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "Destinations/Destination_Impl.h"

namespace YLog {

class Destination_SystemLog_Impl final : public Destination_Impl,
                                         public Destination_SystemLog,
                                         public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  using Destination_Impl::LogMessage;
  void LogMessage(const char* text, const MessageHeader& header) const override;
  void SetApplicationName(const char* name) override;
  /// Closes the connection and forgets the name. A record that is logged after that opens another.
  void Close() noexcept;
  void LogMessage(const char* text, MessageSeverity severity, unsigned messageID) const override;

 private:
  ~Destination_SystemLog_Impl() override;

  void RegisterDefaultNameIfNone() const;
  void RegisterApplicationName(const char* name) const YSYNCH_REQUIRES(mLock);
  void UnregisterApplicationName() const noexcept YSYNCH_REQUIRES(mLock, mConnectionLock);

  // The C library keeps the pointer that it is given.
  mutable std::string mApplicationName YSYNCH_GUARDED_BY(mLock);
  mutable std::atomic<bool> mbRegistered{false};
  mutable YSynch::CriticalSection mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  // Held for reading during every `syslog`, so that a fork waits for it: the C library takes its own lock
  // there, and a child that inherited that lock locked would wait forever. Held for writing while the name
  // changes, so that no record is sent without one.
  mutable YSynch::RWLock mConnectionLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
};

}  // namespace YLog

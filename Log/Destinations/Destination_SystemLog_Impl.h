#pragma once

#include <atomic>
#include <string>

#include <YBase/StrongPtr.h>
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
  /// Registers nothing yet.
  Destination_SystemLog_Impl();

  using Destination_Impl::LogMessage;
  void LogMessage(const char* text, const MessageHeader& header) const override;
  void SetApplicationName(const char* name) override;
  /// Closes the connection and forgets the name. A record that comes nevertheless opens another.
  void Close() noexcept;
  void LogMessage(const char* text, MessageSeverity severity, unsigned messageID) const override;

 private:
  ~Destination_SystemLog_Impl() override;

  void RegisterDefaultNameIfNone() const;
  void RegisterApplicationName(const char* name) const YSYNCH_REQUIRES(*mpLock);
  void UnregisterApplicationName() const noexcept YSYNCH_REQUIRES(*mpLock, *mpConnectionLock);

  // The C library keeps the pointer that it is given.
  mutable std::string mApplicationName YSYNCH_GUARDED_BY(*mpLock);
  mutable std::atomic<bool> mbRegistered{false};
  const YBase::StrongPtr<YSynch::CriticalSection> mpLock;
  // Held for reading during every `syslog`, so that a fork waits for it: the C library has a lock of its own
  // there, which a child would inherit in its locked state and wait for without end. Held for writing while
  // the name changes, so that no record goes out without one.
  const YBase::StrongPtr<YSynch::RWLock> mpConnectionLock;
};

}  // namespace YLog

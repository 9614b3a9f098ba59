#pragma once

#include <string_view>

#include <YLog/Destination_DebugOutput.h>
#include <YSynch/CriticalSection.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "Destinations/Destination_Impl.h"
#include "Destinations/StandardError.h"

namespace YLog {

class Destination_DebugOutput_Impl final : public Destination_Impl,
                                           public Destination_DebugOutput,
                                           public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  using Destination_Impl::LogMessage;
  void LogMessage(const char* text, const MessageHeader& header) const override;
  void LogMessage(const char* text) const override;

 private:
  ~Destination_DebugOutput_Impl() override = default;

  void Write(std::string_view text) const;

  // Keeps the records of several threads apart.
  mutable YSynch::CriticalSection mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  mutable StandardError mStandardError YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YLog

#pragma once

#include <string_view>

#include <YBase/StrongPtr.h>
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
  Destination_DebugOutput_Impl();

  using Destination_Impl::LogMessage;
  void LogMessage(const char* text, const MessageHeader& header) const override;
  void LogMessage(const char* text) const override;

 private:
  ~Destination_DebugOutput_Impl() override = default;

  void Write(std::string_view text) const;

  // Keeps the records of several threads apart on the stream.
  const YBase::StrongPtr<YSynch::CriticalSection> mpLock;
  mutable StandardError mStandardError YSYNCH_GUARDED_BY(*mpLock);
};

}  // namespace YLog

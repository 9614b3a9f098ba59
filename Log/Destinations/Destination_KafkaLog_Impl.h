#pragma once

#include <atomic>
#include <string>

#include <YBase/Allocator.h>
#include <YBase/FeatureFlags.h>
#include <YBase/SmartPtrI.h>
#include <YBase/StrongPtr.h>
#include <YDataType/DateTime.h>
#include <YLog/Destination_KafkaLog.h>
#include <YSynch/CriticalSection.h>
#include <YSynch/RWLock.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "Destinations/Destination_Impl.h"

namespace YLog {

/// The parts of a broker destination that the rest of the system uses, without a broker: it never contacts a
/// server.
class Destination_KafkaLog_Impl final : public Destination_Impl,
                                        public Destination_KafkaLog,
                                        public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  using WideText = std::basic_string<wchar_t, std::char_traits<wchar_t>, YBase::Allocator<wchar_t>>;
  /// As `YBase::IsFeatureEnabled`.
  using FeatureQuery = bool (*)(const wchar_t* name);

  explicit Destination_KafkaLog_Impl(const wchar_t* path,
                                     FeatureQuery isFeatureEnabled = &YBase::IsFeatureEnabled);

  YBase::SmartPtrI<Destination_DiskFile> GetBackupDiskFileDestination() const override { return mpBackup; }
  using Destination_Impl::LogMessage;
  void LogMessage(const char* text, const MessageHeader& header) const override;

  /// Composes the diagnostics topic ".first.second", once. Does nothing if a name is missing.
  static void ComposeTopic(const wchar_t* first, const wchar_t* second);
  static bool IsDiagTopicReady() noexcept { return sbDiagTopicInitialized.load(std::memory_order_acquire); }
  /// Does nothing.
  static void UpdateLogRegistryStr(const wchar_t* text) noexcept;
  /// Null: there is no registry topic.
  static const wchar_t* GetRegistryTopicString() noexcept { return nullptr; }

  bool IsTimeToTryServer() const noexcept { return false; }
  /// Returns whether the status has changed. If several threads report the same change, one of them receives
  /// true.
  bool UpdateProducerStatus(int status) const;

  static WideText sLogRegistryEntryStr;
  static WideText sDiagTopic YSYNCH_GUARDED_BY(*sCriticalSectionPtr);
  static YBase::StrongPtr<YSynch::CriticalSection> sCriticalSectionPtr;

 private:
  ~Destination_KafkaLog_Impl() override = default;

  void AskForFeature() const;

  static std::atomic<bool> sbDiagTopicInitialized;

  const YBase::SmartPtrI<Destination_DiskFile> mpBackup;
  const YDataType::DateTime mServerAttemptTime;
  mutable YSynch::RWLock mStatusLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  mutable int mProducerStatus YSYNCH_GUARDED_BY(mStatusLock) = 0;
  const FeatureQuery mpIsFeatureEnabled;
};

}  // namespace YLog

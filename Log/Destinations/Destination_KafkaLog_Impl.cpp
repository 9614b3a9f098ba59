#include "Destinations/Destination_KafkaLog_Impl.h"

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>

namespace YLog {

namespace {

constexpr const wchar_t* TOPIC_CONNECTOR = L".";
constexpr const wchar_t* FEATURE_NAME = L"KS/SLMS";

bool IsEmpty(const wchar_t* text) {
  return text == nullptr || *text == L'\0';
}

}  // namespace

Destination_KafkaLog::~Destination_KafkaLog() = default;

Destination_KafkaLog_Impl::WideText Destination_KafkaLog_Impl::sLogRegistryEntryStr;
Destination_KafkaLog_Impl::WideText Destination_KafkaLog_Impl::sDiagTopic;
YBase::StrongPtr<YSynch::CriticalSection> Destination_KafkaLog_Impl::sCriticalSectionPtr =
    YSynch::CreateCriticalSection(YSynch::LOCK_STACK_CATEGORY_CLASS);
constinit std::atomic<bool> Destination_KafkaLog_Impl::sbDiagTopicInitialized{false};

Destination_KafkaLog_Impl::Destination_KafkaLog_Impl(const wchar_t* path, FeatureQuery isFeatureEnabled)
    : mpBackup(YLog::GetDestination_DiskFile(path)),
      mServerAttemptTime(YDataType::DateTime::NowUTC()),
      mpStatusLock(YSynch::CreateRWLock(YSynch::LOCK_STACK_CATEGORY_OBJECT)),
      mpIsFeatureEnabled(isFeatureEnabled) {}

void Destination_KafkaLog_Impl::LogMessage(const char* text, const MessageHeader& header) const {
  AskForFeature();
  if (mpBackup) mpBackup->LogMessage(text, header);
}

/// Without a broker to send to, both answers lead to the backup file, and so does none.
void Destination_KafkaLog_Impl::AskForFeature() const {
  try {
    mpIsFeatureEnabled(FEATURE_NAME);
  } catch (const YBase::ExceptionImpl<YBase::Message>&) {
    // A flag that cannot be had must not cost a record.
  }
}

void Destination_KafkaLog_Impl::ComposeTopic(const wchar_t* first, const wchar_t* second) {
  if (IsEmpty(first) || IsEmpty(second) || IsDiagTopicReady()) return;
  // Missing only before the library is loaded as a whole, and after.
  if (!sCriticalSectionPtr) return;
  const YSynch::CriticalSection::SmartLock lock(*sCriticalSectionPtr);
  if (IsDiagTopicReady()) return;
  WideText topic = TOPIC_CONNECTOR;
  topic.append(first).append(TOPIC_CONNECTOR).append(second);
  sDiagTopic.swap(topic);
  // Release: whoever sees the flag sees the topic.
  sbDiagTopicInitialized.store(true, std::memory_order_release);
}

void Destination_KafkaLog_Impl::UpdateLogRegistryStr(const wchar_t* /*text*/) noexcept {}

bool Destination_KafkaLog_Impl::UpdateProducerStatus(int status) const {
  {
    const YSynch::RWLock::ReadSmartLock lock(*mpStatusLock);
    if (status == mProducerStatus) return false;
  }
  const YSynch::RWLock::WriteSmartLock lock(*mpStatusLock);
  if (status == mProducerStatus) return false;
  mProducerStatus = status;
  return true;
}

}  // namespace YLog

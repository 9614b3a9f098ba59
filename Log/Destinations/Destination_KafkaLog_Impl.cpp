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
      mpIsFeatureEnabled(isFeatureEnabled) {}

void Destination_KafkaLog_Impl::LogMessage(const char* text, const MessageHeader& header) const {
  AskForFeature();
  if (mpBackup) mpBackup->LogMessage(text, header);
}

/// There is no broker to send to, so every answer leads to the backup file, and so does a failure.
void Destination_KafkaLog_Impl::AskForFeature() const {
  try {
    mpIsFeatureEnabled(FEATURE_NAME);
  } catch (const YBase::ExceptionImpl<YBase::Message>&) {
    // A flag that cannot be read must not lose a record.
  }
}

void Destination_KafkaLog_Impl::ComposeTopic(const wchar_t* first, const wchar_t* second) {
  if (IsEmpty(first) || IsEmpty(second) || IsDiagTopicReady()) return;
  // Null only while the library is being loaded or unloaded.
  if (!sCriticalSectionPtr) return;
  const YSynch::CriticalSection::SmartLock lock(*sCriticalSectionPtr);
  if (IsDiagTopicReady()) return;
  WideText topic = TOPIC_CONNECTOR;
  topic.append(first).append(TOPIC_CONNECTOR).append(second);
  sDiagTopic.swap(topic);
  // Release: a thread that sees the flag also sees the topic.
  sbDiagTopicInitialized.store(true, std::memory_order_release);
}

void Destination_KafkaLog_Impl::UpdateLogRegistryStr(const wchar_t* /*text*/) noexcept {}

bool Destination_KafkaLog_Impl::UpdateProducerStatus(int status) const {
  {
    const YSynch::RWLock::ReadSmartLock lock(mStatusLock);
    if (status == mProducerStatus) return false;
  }
  const YSynch::RWLock::WriteSmartLock lock(mStatusLock);
  if (status == mProducerStatus) return false;
  mProducerStatus = status;
  return true;
}

}  // namespace YLog

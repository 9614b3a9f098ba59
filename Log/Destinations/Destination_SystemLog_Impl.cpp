#include "Destinations/Destination_SystemLog_Impl.h"

#include <syslog.h>

#include <cassert>
#include <iterator>

#include <YBase/CancellationGuard.h>
#include <YBase/StandardDescriptorsGuard.h>
#include <YLog/MessageHeader.h>

namespace YLog {

namespace {

constexpr const char* DEFAULT_APPLICATION_NAME = "Vellatorquine Application";

Destination_SystemLog::MessageSeverity SeverityOf(unsigned messageID) {
  switch (messageID & 0xC0000000U) {
    case 0x80000000U:
      return Destination_SystemLog::SeverityError;
    case 0x40000000U:
      return Destination_SystemLog::SeverityWarning;
    default:
      return Destination_SystemLog::SeverityInformation;
  }
}

int PriorityOf(Destination_SystemLog::MessageSeverity severity) {
  static constexpr int PRIORITIES[] = {
      LOG_USER | LOG_INFO,
      LOG_USER | LOG_WARNING,
      LOG_USER | LOG_ERR,
  };
  // An unknown severity is better seen than lost.
  return severity < std::size(PRIORITIES) ? PRIORITIES[severity] : LOG_USER | LOG_EMERG;
}

}  // namespace

Destination_SystemLog::~Destination_SystemLog() = default;

Destination_SystemLog_Impl::~Destination_SystemLog_Impl() {
  Close();
}

void Destination_SystemLog_Impl::Close() noexcept {
  const YBase::CancellationGuard cancellationGuard;
  const YSynch::CriticalSection::SmartLock lock(mLock);
  const YSynch::RWLock::WriteSmartLock connectionLock(mConnectionLock);
  UnregisterApplicationName();
  mApplicationName.clear();
}

void Destination_SystemLog_Impl::LogMessage(const char* text, const MessageHeader& header) const {
  assert(text != nullptr);
  const unsigned messageID = header.GetMessageID();
  RecordText record;
  FormatMultiLineMessageText(messageID, header.ToString(), text, false, record);
  LogMessage(record.CStr(), SeverityOf(messageID), messageID);
}

void Destination_SystemLog_Impl::LogMessage(const char* text, MessageSeverity severity,
                                            unsigned /*messageID*/) const {
  assert(text != nullptr);
  if (text == nullptr) return;
  const YBase::CancellationGuard cancellationGuard;
  RegisterDefaultNameIfNone();
  const YSynch::RWLock::ReadSmartLock lock(mConnectionLock);
  // Any record may make the C library connect, the first one and one after a restart of the daemon.
  const YBase::StandardDescriptorsGuard descriptorsGuard;
  ::syslog(PriorityOf(severity), "%s", text);
}

void Destination_SystemLog_Impl::SetApplicationName(const char* name) {
  assert(name != nullptr);
  if (name == nullptr) return;
  const YBase::CancellationGuard cancellationGuard;
  const YSynch::CriticalSection::SmartLock lock(mLock);
  if (name != mApplicationName) RegisterApplicationName(name);
}

void Destination_SystemLog_Impl::RegisterDefaultNameIfNone() const {
  // Acquire: the C library has the name when it gets the record.
  if (mbRegistered.load(std::memory_order_acquire)) return;
  const YSynch::CriticalSection::SmartLock lock(mLock);
  // Checked again: another thread may have registered a name in the meantime.
  if (!mbRegistered.load(std::memory_order_relaxed)) RegisterApplicationName(DEFAULT_APPLICATION_NAME);
}

void Destination_SystemLog_Impl::RegisterApplicationName(const char* name) const {
  std::string newName = name;
  const YSynch::RWLock::WriteSmartLock connectionLock(mConnectionLock);
  UnregisterApplicationName();
  mApplicationName.swap(newName);
  ::openlog(mApplicationName.c_str(), LOG_CONS, LOG_USER);
  mbRegistered.store(true, std::memory_order_release);
}

void Destination_SystemLog_Impl::UnregisterApplicationName() const noexcept {
  if (!mbRegistered.load(std::memory_order_relaxed)) return;
  ::closelog();
  mbRegistered.store(false, std::memory_order_relaxed);
}

}  // namespace YLog

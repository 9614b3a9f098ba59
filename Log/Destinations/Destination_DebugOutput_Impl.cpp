#include "Destinations/Destination_DebugOutput_Impl.h"

#include <cassert>

#include <YBase/CancellationGuard.h>
#include <YLog/MessageHeader.h>

namespace YLog {

Destination_DebugOutput::~Destination_DebugOutput() = default;

Destination_DebugOutput_Impl::Destination_DebugOutput_Impl()
    : mpLock(YSynch::CreateCriticalSection(YSynch::LOCK_STACK_CATEGORY_OBJECT)) {}

void Destination_DebugOutput_Impl::LogMessage(const char* text, const MessageHeader& header) const {
  assert(text != nullptr);
  RecordText record;
  FormatMultiLineMessageText(header.GetMessageID(), header.ToString(), text, true, record);
  Write(record.View());
}

void Destination_DebugOutput_Impl::LogMessage(const char* text) const {
  assert(text != nullptr);
  if (text == nullptr || *text == '\0') return;
  RecordText line;
  line.Append(text);
  if (line.View().back() != '\n') line.Append('\n');
  Write(line.View());
}

void Destination_DebugOutput_Impl::Write(std::string_view text) const {
  // A record that has been begun is finished.
  const YBase::CancellationGuard cancellationGuard;
  const YSynch::CriticalSection::SmartLock lock(*mpLock);
  mStandardError.Write(text);
}

}  // namespace YLog

#include "Destinations/Destination_DebugOutput_Impl.h"

#include <cassert>

#include <YBase/CancellationGuard.h>
#include <YLog/MessageHeader.h>

namespace YLog {

Destination_DebugOutput::~Destination_DebugOutput() = default;

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
  // A cancelled thread finishes the record it has begun.
  const YBase::CancellationGuard cancellationGuard;
  const YSynch::CriticalSection::SmartLock lock(mLock);
  mStandardError.Write(text);
}

}  // namespace YLog

#include "Destinations/Destination_Impl.h"

#include <YLog/MessageBody.h>

#include "Destinations/CallStackText.h"

namespace YLog {

Destination::~Destination() = default;

void Destination_Impl::LogMessage(const MessageHeader& header, const MessageBody& body) const {
  LogMessage(body.GetText(GetLanguageID()), header);
}

void Destination_Impl::SetCallstackMessageIDs(const unsigned* ids, unsigned count) {
  mCallstackMessageIDs.Set(ids, count);
}

unsigned short Destination_Impl::GetLanguageID() const {
  return mLanguageID.load(std::memory_order_relaxed);
}

void Destination_Impl::SetLanguageID(unsigned short language) {
  mLanguageID.store(language, std::memory_order_relaxed);
}

void Destination_Impl::FormatMultiLineMessageText(unsigned messageID, const char* headerText,
                                                  const char* messageText, bool appendNewLine,
                                                  RecordText& record) const {
  AppendMultiLineMessageText(headerText, messageText, record);
  if (mCallstackMessageIDs.Contains(messageID)) AppendCallStack(record);
  if (appendNewLine && !record.Empty()) record.Append('\n');
}

}  // namespace YLog

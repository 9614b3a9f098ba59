#include "Destinations/RecordLayout.h"

#include <cstring>
#include <string_view>

#include <YLog/Destination.h>

namespace YLog {

namespace {

constexpr const char* LINE_BREAKS = "\r\n";
constexpr char NEW_LINE = '\n';

const char* SkipLineBreaks(const char* text) {
  return text + std::strspn(text, LINE_BREAKS);
}

/// Appends the line at the beginning of `text` and returns where the next one begins.
const char* AppendLine(const char* text, RecordText& record) {
  const std::size_t length = std::strcspn(text, LINE_BREAKS);
  record.Append(std::string_view(text, length));
  return SkipLineBreaks(text + length);
}

}  // namespace

void AppendMultiLineMessageText(const char* headerText, const char* messageText, RecordText& record) {
  const bool hasMessage = messageText != nullptr && *messageText != '\0';
  const char* message = hasMessage ? SkipLineBreaks(messageText) : "";
  // A message of nothing but line breaks is not logged at all, not even its header. An empty one shows the
  // header.
  if (hasMessage && *message == '\0') return;

  const std::string_view prefix = headerText != nullptr ? SkipLineBreaks(headerText) : "";
  if (!prefix.empty()) {
    record.Append(prefix);
    record.Append(' ');
  }
  message = AppendLine(message, record);
  while (*message != '\0') {
    record.Append(NEW_LINE);
    message = AppendLine(message, record);
  }
}

YBase::ReturnString FormatMultiLineMessageText(unsigned /*messageID*/, const char* headerText,
                                               const char* messageText) {
  RecordText record;
  AppendMultiLineMessageText(headerText, messageText, record);
  return YBase::ReturnString(record.View());
}

}  // namespace YLog

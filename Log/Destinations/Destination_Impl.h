#pragma once

#include <atomic>

#include <YLog/Destination.h>

#include "Destinations/CallstackMessageIDs.h"
#include "Destinations/RecordLayout.h"

namespace YLog {

/// What all destinations of the library have in common.
class Destination_Impl : public virtual Destination {
 public:
  // Keeps the overloads that take a text visible in derived classes.
  using Destination::LogMessage;
  void LogMessage(const MessageHeader& header, const MessageBody& body) const override;
  void SetCallstackMessageIDs(const unsigned* ids, unsigned count) override;
  unsigned short GetLanguageID() const override;
  void SetLanguageID(unsigned short language) override;

 protected:
  Destination_Impl() = default;
  ~Destination_Impl() override = default;

  /// Appends a whole record: header, message, and the call stack if the message ID is one of those that show
  /// it. An empty record has no line feed.
  void FormatMultiLineMessageText(unsigned messageID, const char* headerText, const char* messageText,
                                  bool appendNewLine, RecordText& record) const;

 private:
  CallstackMessageIDs mCallstackMessageIDs;
  // Relaxed: it is set before messages are logged, and nothing else depends on it.
  std::atomic<unsigned short> mLanguageID{0};
};

}  // namespace YLog

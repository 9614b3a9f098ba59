#pragma once

#include <atomic>

#include <YLog/Destination.h>

#include "Destinations/CallstackMessageIDs.h"
#include "Destinations/RecordLayout.h"

namespace YLog {

/// What all destinations of the library have in common.
class Destination_Impl : public virtual Destination {
 public:
  // Those with a text stay visible, for the classes derived from this.
  using Destination::LogMessage;
  void LogMessage(const MessageHeader& header, const MessageBody& body) const override;
  void SetCallstackMessageIDs(const unsigned* ids, unsigned count) override;
  unsigned short GetLanguageID() const override;
  void SetLanguageID(unsigned short language) override;

 protected:
  Destination_Impl() = default;
  ~Destination_Impl() override = default;

  /// Appends a whole record: header, message, and the call stack where the message is one of those that show
  /// it. The line feed behind it is left out where the record is empty.
  void FormatMultiLineMessageText(unsigned messageID, const char* headerText, const char* messageText,
                                  bool appendNewLine, RecordText& record) const;

 private:
  CallstackMessageIDs mCallstackMessageIDs;
  // Relaxed: a number that is set before messages flow, and on which nothing else depends.
  std::atomic<unsigned short> mLanguageID{0};
};

}  // namespace YLog

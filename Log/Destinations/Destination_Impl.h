#pragma once

#include <atomic>

#include <YLog/Destination.h>

#include "Destinations/RecordLayout.h"

namespace YLog {

/// What all destinations of the library have in common.
class Destination_Impl : public virtual Destination {
 public:
  unsigned short GetLanguageID() const override;
  void SetLanguageID(unsigned short language) override;

 protected:
  Destination_Impl() = default;
  ~Destination_Impl() override = default;

  /// Appends a whole record. The line feed behind it is left out where the record is empty.
  void FormatMultiLineMessageText(unsigned messageID, const char* headerText, const char* messageText,
                                  bool appendNewLine, RecordText& record) const;

 private:
  // Relaxed: a number that is set before messages flow, and on which nothing else depends.
  std::atomic<unsigned short> mLanguageID{0};
};

}  // namespace YLog

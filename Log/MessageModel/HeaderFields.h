#pragma once

#include <string>

#include "MessageModel/NumberField.h"
#include "MessageModel/Timestamp_Impl.h"

namespace YLog {

/// What a text line says about a message. A header exchanges all of it when it has parsed a line, and the
/// header of a nested message copies all of it, so a field that is added here needs no mention there.
struct HeaderFields {
  std::string computerName;
  NumberField<unsigned> processID;
  NumberField<unsigned long> threadID;
  Timestamp_Impl timestamp;
  // Empty until it is asked for or set.
  mutable std::string timestampText;
  std::string loggerName;
  std::string dispatcherName;
  NumberField<unsigned> messageID;
  std::string userID;
  std::string sessionID;
  std::string objectID;
  std::string fileName;
  std::string funcName;
  int lineNumber = 0;
};

}  // namespace YLog

#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/Destination.h>

namespace YLog {

/// Writes records to the process's standard error stream. Each is written whole and with the stream locked,
/// so that it does not mix with the records of other threads or with what the host writes through the stream.
/// The stream's own buffering applies.
///
/// Failure: a record that the stream does not accept is dropped; a closed pipe or a limit on the size of
/// files does not end the process. Interrupted calls are repeated. If standard error is non-blocking, a
/// record waits up to a second for room. If there is none by then, that record and the next ones are dropped
/// until there is room. Once a part of a record has been written, the rest waits without a time limit.
class YLOG_EXPORT Destination_DebugOutput : public virtual Destination {
 public:
  using Destination::LogMessage;
  /// Writes a text without a header, and a line feed after it unless it ends in one. An empty text writes
  /// nothing.
  virtual void LogMessage(const char* text) const = 0;

 protected:
  ~Destination_DebugOutput() override;
};

/// The one destination for standard error.
YLOG_EXPORT YBase::SmartPtrI<Destination_DebugOutput> GetDestination_DebugOutput();

}  // namespace YLog

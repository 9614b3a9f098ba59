#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/Destination.h>

namespace YLog {

/// Writes records to the process's standard error stream, each of them whole and with the stream locked, so
/// that those of several threads do not mix, nor with what the host writes through the stream. The stream's
/// own buffering applies.
///
/// Failure: what the stream cannot take is dropped; a closed pipe or a limit on the size of files does not
/// end the process. Interrupted calls are repeated. Where standard error is non-blocking, a record waits up
/// to a second for room; if the reader has stopped by then, that record and the next ones are dropped until
/// there is room.
class YLOG_EXPORT Destination_DebugOutput : public virtual Destination {
 public:
  using Destination::LogMessage;
  /// Writes a text without a header, with a line feed behind it unless it ends in one. An empty text writes
  /// nothing.
  virtual void LogMessage(const char* text) const = 0;

 protected:
  ~Destination_DebugOutput() override;
};

/// The one destination for standard error.
YLOG_EXPORT YBase::SmartPtrI<Destination_DebugOutput> GetDestination_DebugOutput();

}  // namespace YLog

#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/Destination.h>

namespace YLog {

/// Writes records to the process's standard error stream, each with one `fwrite`, so that those of several
/// threads do not mix. The stream's own buffering applies.
///
/// Failure: what the stream cannot take is dropped; a closed pipe does not end the process.
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

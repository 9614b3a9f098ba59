#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/Destination.h>

namespace YLog {

/// Sends records to the operating system's log, each as one entry whose lines are separated by line feeds.
/// The severity of a record is in the two highest bits of its message ID: 10 is an error, 01 a warning,
/// anything else information.
///
/// The connection to the system log belongs to the C library, and a process has one: a host that calls
/// `openlog` itself also changes the name for this destination.
///
/// Threads: any. A record that is logged during `SetApplicationName` has the old name or the new one, never
/// none.
///
/// Failure: the system reports none. Without a system log daemon, records are written to the system console
/// if there is one. While the daemon has stopped reading, each call waits until it reads again, and so does a
/// fork.
class YLOG_EXPORT Destination_SystemLog : public virtual Destination {
 public:
  /// Other values are legal, and are sent with the highest urgency.
  enum MessageSeverity : unsigned {
    SeverityInformation = 0,
    SeverityWarning = 1,
    SeverityError = 2,
  };

  /// The name under which records are sent. If the first record is sent before a name is set, the name is
  /// "Vellatorquine Application". An empty name is ignored unless another one was set before. \pre `name` is
  /// not null.
  virtual void SetApplicationName(const char* name) = 0;

  using Destination::LogMessage;
  /// Sends a text without a header. The message ID is not used. \pre `text` is not null.
  virtual void LogMessage(const char* text, MessageSeverity severity, unsigned messageID) const = 0;

 protected:
  ~Destination_SystemLog() override;
};

/// The one destination for the system log.
YLOG_EXPORT YBase::SmartPtrI<Destination_SystemLog> GetDestination_SystemLog();

}  // namespace YLog

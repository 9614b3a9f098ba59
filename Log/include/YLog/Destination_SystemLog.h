#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/Destination.h>

namespace YLog {

/// Sends records to the operating system's log, each as one entry whose lines are parted by line feeds. The
/// severity of a record is in the two highest bits of its message ID: 10 is an error, 01 a warning, anything
/// else an information.
///
/// The connection to the system log is the C library's, of which a process has one: a host that calls
/// `openlog` itself changes the name for this destination, too.
///
/// Threads: any. Records go out under the name before or after a `SetApplicationName`, never without one.
///
/// Failure: the system reports none. Without a system log daemon, records go to the system console as far as
/// there is one. While the daemon has stopped reading, each call waits until it goes on, and so does a fork;
/// see docs/system-log.md.
class YLOG_EXPORT Destination_SystemLog : public virtual Destination {
 public:
  /// Other values are legal, and sent at the highest urgency.
  enum MessageSeverity : unsigned {
    SeverityInformation = 0,
    SeverityWarning = 1,
    SeverityError = 2,
  };

  /// The name under which records are sent: "Vellatorquine Application" if the first record comes before it
  /// is set. The empty name is no name until another one was set. \pre `name` is not null.
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

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

namespace Support {

/// An rsyslog daemon of the test's own, in a /dev of the test's own.
///
/// From its construction on, the calling thread and those that it starts see a new, small /dev, in which
/// "log" leads to this daemon and "console" is an empty file. Nothing changes for other processes.
///
/// Failure: throws std::system_error where `EnterPrivateMounts` does.
///
/// \pre The process has one thread.
class SystemLogDaemon {
 public:
  struct Record {
    int mPriority;
    /// What the C library puts before the text: the name.
    std::string mName;
    std::string mText;

    bool operator==(const Record&) const = default;
  };

  /// Not running yet.
  SystemLogDaemon();

  /// Returns when it takes records.
  void Start();
  /// Returns when it has ended, with all that was sent before.
  void Stop();
  /// It stays there, and so does its socket, but nothing is taken from it.
  void StopReading();
  void GoOnReading();

  /// Sends as many records as the socket holds before the daemon reads them, past the C library. They are
  /// left out of what `ReadRecords` returns. \pre The daemon has stopped reading.
  void FillUp();

  /// Everything that was sent so far, by whomever.
  std::vector<Record> ReadRecords();

  /// What was written to the console.
  std::string ReadConsole() const;

 private:
  void WriteConfiguration() const;
  void SendMarker(const std::string& marker) const;

  const TemporaryDirectory mDirectory;
  const std::filesystem::path mConfiguration = mDirectory.Path() / "rsyslog.conf";
  const std::filesystem::path mRecords = mDirectory.Path() / "records";
  int mMarkers = 0;
  std::optional<ChildProcess> mProcess;
};

void PrintTo(const SystemLogDaemon::Record& record, std::ostream* stream);

}  // namespace Support

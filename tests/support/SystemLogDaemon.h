#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

namespace Support {

/// An rsyslog daemon for one test, in a /dev for the same test.
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
    /// The application's name, which the C library puts before the text.
    std::string mName;
    std::string mText;

    bool operator==(const Record&) const = default;
  };

  /// Not running yet.
  SystemLogDaemon();

  /// Returns when the daemon accepts records.
  void Start();
  /// Returns when the daemon has received everything that was sent before, and has ended.
  void Stop();
  /// The daemon and its socket stay, but nothing is read from the socket.
  void StopReading();
  void ResumeReading();

  /// Fills the socket with records, without the C library. `ReadRecords` does not return them. \pre The
  /// daemon has stopped reading.
  void FillUp();

  /// Everything that any process has sent so far.
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

#pragma once

#include <csignal>
#include <cstdio>
#include <string>

#include <YBase/CancellationGuard.h>
#include <YBase/SignalGuard.h>

namespace YLog {

/// The text file that statistics are printed to. Replaced when it is opened; programs that this process
/// starts do not inherit it. While one exists, a limit on the size of files and a pipe that nobody reads do
/// not end the host: they are failures like any other. A cancellation of the thread takes effect afterwards.
///
/// Threads: belongs to one.
class TraceFile {
 public:
  explicit TraceFile(const std::string& path) noexcept;
  ~TraceFile();
  TraceFile(const TraceFile&) = delete;
  TraceFile& operator=(const TraceFile&) = delete;

  /// What to print to. Null where the file could not be opened, and once it is closed.
  std::FILE* Get() const noexcept { return mpFile; }

  /// Says whether all that was printed is with the kernel. \pre The file is open.
  bool Close() noexcept;

 private:
  const YBase::CancellationGuard mCancellationGuard;
  const YBase::SignalGuard mSizeGuard{SIGXFSZ};
  const YBase::SignalGuard mPipeGuard{SIGPIPE};
  std::FILE* mpFile;
};

}  // namespace YLog

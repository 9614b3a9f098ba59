#pragma once

#include <csignal>
#include <cstdio>
#include <string>

#include <YBase/CancellationGuard.h>
#include <YBase/SignalGuard.h>

namespace YLog {

/// The text file that statistics are printed to. Opening it replaces its content; programs that this process
/// starts do not inherit it. While it exists, a file-size limit and a pipe without a reader are ordinary
/// failures that do not end the host, and the thread cannot be cancelled.
///
/// Threads: created, used and destroyed by one.
class TraceFile {
 public:
  explicit TraceFile(const std::string& path) noexcept;
  ~TraceFile();
  TraceFile(const TraceFile&) = delete;
  TraceFile& operator=(const TraceFile&) = delete;

  /// The stream to print to. Null if the file could not be opened, and after `Close`.
  std::FILE* Get() const noexcept { return mpFile; }

  /// Returns whether all that was printed has reached the kernel. \pre The file is open.
  bool Close() noexcept;

 private:
  const YBase::CancellationGuard mCancellationGuard;
  const YBase::SignalGuard mSizeGuard{SIGXFSZ};
  const YBase::SignalGuard mPipeGuard{SIGPIPE};
  std::FILE* mpFile;
};

}  // namespace YLog

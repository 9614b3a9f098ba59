#pragma once

#include <chrono>
#include <string_view>

namespace YLog {

/// Writes texts to the process's standard error stream, each of them as a whole.
///
/// An interrupted or partial write is continued, and the stream stays locked against output of the host until
/// then. A text that has been begun is finished. If the host has made its standard error non-blocking, a text
/// that finds no room waits a little for the reader; after the reader has stopped, texts are dropped instead.
///
/// Threads: one at a time, with cancellation disabled.
///
/// Failure: what the stream does not take is dropped. If that is the rest of a text, the next text begins on
/// a new line.
class StandardError {
 public:
  /// How long a text waits at most until the reader of a non-blocking standard error begins to take it.
  explicit StandardError(std::chrono::milliseconds patience = std::chrono::seconds(1)) noexcept
      : mPatience(patience) {}

  void Write(std::string_view text) noexcept;

 private:
  using TimePoint = std::chrono::steady_clock::time_point;

  bool WriteWhole(std::string_view text) noexcept;
  bool WaitForRoom(TimePoint end, bool isBegun) noexcept;

  const std::chrono::milliseconds mPatience;
  bool mbReaderHasStopped = false;
  bool mbEndsInFragment = false;
};

}  // namespace YLog

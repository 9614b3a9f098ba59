#pragma once

#include <chrono>
#include <string_view>

namespace YLog {

/// Writes texts through the process's standard error stream, each of them whole.
///
/// What interrupts a call, or lets it take a part only, leads to another call, with the stream locked in
/// between against output of the host's. A text that has been begun is finished. Where the host has made its
/// standard error non-blocking, a text that finds no room waits a little for the reader, but not for one that
/// has stopped reading: such a text is left out.
///
/// Threads: one at a time, in a process whose threads cannot be cancelled meanwhile.
///
/// Failure: what the stream cannot take is left out. If that is the rest of a text, the next one begins a
/// line of its own.
class StandardError {
 public:
  /// How long a text waits at most for a reader of a non-blocking standard error to begin to take it.
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

#pragma once

#include <chrono>
#include <optional>
#include <string>

#include <YDataType/DateTime.h>

namespace YLog {

/// What a disk file could not take: how many messages, since when and why, and when it may be tried again.
///
/// Threads: guarded by its owner.
class MissedMessages {
 public:
  /// Writing failed, and `count` messages are lost with it.
  void Begin(std::string reason, int count);
  /// A message is dropped within the retry period. That moves no time: only failures do.
  void CountDropped() noexcept;
  /// Trying again failed, and the message that tried is lost; since when and why stays as it was.
  void RetryFailed();
  /// They have been reported, and why.
  void Clear() noexcept;

  /// Whether the retry period is over, by the wall clock or by one that is never set back; it always is
  /// before the first failure.
  bool IsRetryDue() const;
  bool IsEmpty() const noexcept { return mCount == 0; }

  /// " Missed 12 messages since 2024-03-05 09:07:03.042 due to: reason".
  std::string Describe() const;

 private:
  void SetLastFailureTimeToNow();

  YDataType::DateTime mFailureStartTime{0.0};
  YDataType::DateTime mLastFailureTime{0.0};
  // The same moment on a clock that nobody sets; none before the first failure.
  std::optional<std::chrono::nanoseconds> mLastFailureMoment;
  std::string mReason;
  int mCount = 0;
};

}  // namespace YLog

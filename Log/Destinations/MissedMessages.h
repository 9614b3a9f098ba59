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
  /// A message is dropped within the retry period. That changes none of the times: only failures do.
  void CountDropped() noexcept;
  /// A retry failed, and its message is lost. The start and the reason of the failure stay as they were.
  void RetryFailed();
  /// The missed messages and the reason have been reported.
  void Clear() noexcept;

  /// Whether the retry period is over, by the wall clock or by the monotonic clock. True before the first
  /// failure.
  bool IsRetryDue() const;
  bool IsEmpty() const noexcept { return mCount == 0; }

  /// " Missed 12 messages since 2024-03-05 09:07:03.042 due to: reason".
  std::string Describe() const;

 private:
  void SetLastFailureTimeToNow();

  YDataType::DateTime mFailureStartTime{0.0};
  YDataType::DateTime mLastFailureTime{0.0};
  // The same moment on the monotonic clock. None before the first failure.
  std::optional<std::chrono::nanoseconds> mLastFailureMoment;
  std::string mReason;
  int mCount = 0;
};

}  // namespace YLog

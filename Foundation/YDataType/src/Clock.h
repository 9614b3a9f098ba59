#pragma once

#include <chrono>

namespace YDataType {

/// The source of the time. White-box tests replace the system's.
///
/// Ownership: the caller that replaces the clock keeps the new one alive while it is in use.
///
/// Threads: any. A thread that has just read which clock is in use may still call a clock that was replaced.
class Clock {
 public:
  using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;

  virtual Instant Now() const noexcept = 0;
  /// See `YDataType::GetMonotonicTime`.
  virtual std::chrono::nanoseconds GetMonotonicTime() const noexcept = 0;

  static const Clock& GetCurrent() noexcept;
  /// Returns the clock that was replaced.
  static const Clock& SetCurrent(const Clock& clock) noexcept;

 protected:
  constexpr Clock() noexcept = default;
  ~Clock() = default;
};

}  // namespace YDataType

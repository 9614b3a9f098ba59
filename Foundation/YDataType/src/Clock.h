#pragma once

#include <chrono>

namespace YDataType {

/// Where the time comes from. White-box tests put another in the place of the system's.
///
/// Ownership: whoever replaces the current clock keeps the new one alive while it is current.
///
/// Threads: any; a replaced clock may still be asked by a thread that was on its way to it.
class Clock {
 public:
  using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;

  virtual Instant Now() const noexcept = 0;
  /// See `YDataType::GetMonotonicTime`.
  virtual std::chrono::nanoseconds GetMonotonicTime() const noexcept = 0;

  static const Clock& GetCurrent() noexcept;
  /// Returns the one it replaces.
  static const Clock& SetCurrent(const Clock& clock) noexcept;

 protected:
  constexpr Clock() noexcept = default;
  ~Clock() = default;
};

}  // namespace YDataType

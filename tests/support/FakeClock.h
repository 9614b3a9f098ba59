#pragma once

#include <atomic>
#include <chrono>

#include "Foundation/YDataType/src/Clock.h"

namespace Support {

/// A clock that stands still until a test moves it. It is the current clock during its lifetime. For programs
/// that link the object libraries.
class FakeClock final : public YDataType::Clock {
 public:
  explicit FakeClock(Instant now) noexcept : mNow(now), mPrevious(SetCurrent(*this)) {}
  /// \pre No other thread reads the time any more.
  ~FakeClock() { SetCurrent(mPrevious); }

  Instant Now() const noexcept override { return mNow.load(); }

  std::chrono::nanoseconds GetMonotonicTime() const noexcept override { return mMonotonicTime.load(); }

  /// Sets the wall clock, as an administrator would.
  void Set(Instant now) noexcept { mNow.store(now); }
  /// Lets time pass on the wall clock and the steady one.
  void Advance(std::chrono::milliseconds time) noexcept {
    Set(Now() + time);
    mMonotonicTime.store(GetMonotonicTime() + time);
  }

 private:
  std::atomic<Instant> mNow;
  std::atomic<std::chrono::nanoseconds> mMonotonicTime{};
  const YDataType::Clock& mPrevious;
};

}  // namespace Support

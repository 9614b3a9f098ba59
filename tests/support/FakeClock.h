#pragma once

#include <atomic>
#include <chrono>

#include "Foundation/YDataType/src/Clock.h"

namespace Support {

/// A clock that stands still until it is told otherwise; the current one as long as it exists. For programs
/// that link the object libraries.
class FakeClock final : public YDataType::Clock {
 public:
  explicit FakeClock(Instant now) noexcept : mNow(now), mPrevious(SetCurrent(*this)) {}
  /// \pre No thread that asks for the time is left.
  ~FakeClock() { SetCurrent(mPrevious); }

  Instant Now() const noexcept override { return mNow.load(); }

  std::chrono::nanoseconds GetMonotonicTime() const noexcept override { return mMonotonicTime.load(); }

  /// Somebody sets the wall clock.
  void Set(Instant now) noexcept { mNow.store(now); }
  /// Time goes by, on both clocks.
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

#include "Clock.h"

#include <YDataType/MonotonicTime.h>

#include <atomic>

namespace YDataType {

namespace {

class SystemClock final : public Clock {
 public:
  constexpr SystemClock() noexcept = default;

  Instant Now() const noexcept override {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
  }
  std::chrono::nanoseconds GetMonotonicTime() const noexcept override {
    return std::chrono::steady_clock::now().time_since_epoch();
  }
};

// Both are constant-initialised and never destroyed: messages may be logged before `main` and after it.
constinit const SystemClock gsSystemClock;
constinit std::atomic<const Clock*> gspCurrentClock{&gsSystemClock};

}  // namespace

// Acquire and release: a thread that finds a clock finds it complete.
const Clock& Clock::GetCurrent() noexcept {
  return *gspCurrentClock.load(std::memory_order_acquire);
}

const Clock& Clock::SetCurrent(const Clock& clock) noexcept {
  return *gspCurrentClock.exchange(&clock, std::memory_order_acq_rel);
}

std::chrono::nanoseconds GetMonotonicTime() noexcept {
  return Clock::GetCurrent().GetMonotonicTime();
}

}  // namespace YDataType

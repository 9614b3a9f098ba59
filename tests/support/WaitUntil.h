#pragma once

#include <chrono>
#include <thread>

namespace Support {

/// Polls until a condition is true, for a minute at most; returns false if it is still not. For events in
/// another process or in the kernel, which can only be polled.
template <class Condition>
bool WaitUntil(Condition condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

}  // namespace Support

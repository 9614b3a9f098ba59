#pragma once

#include <chrono>
#include <thread>

namespace Support {

/// Looks again and again whether a condition has come about, for a minute at most; false where it has not.
/// For what happens in another process or in the kernel, and can only be looked at.
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

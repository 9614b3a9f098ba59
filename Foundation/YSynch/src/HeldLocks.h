#pragma once

#include <atomic>

namespace YSynch {

/// How many locks of this library a thread holds.
///
/// While a fork collects the locks, a thread that holds none waits a little before it takes one, so that the
/// others come free and stay so. A thread that holds one goes on: it may have to, to give that one back.
class HeldLocks {
 public:
  constexpr HeldLocks() noexcept = default;
  HeldLocks(const HeldLocks&) = delete;
  HeldLocks& operator=(const HeldLocks&) = delete;

  /// The calling thread's. No other living thread's has this address, and in a child of a fork it is the
  /// same: it may stand for the thread.
  static HeldLocks& OfThisThread() noexcept { return sThis; }

  static void SetCollectedByFork(bool collected) noexcept {
    sbCollectedByFork.store(collected, std::memory_order_relaxed);
  }

  /// To be called before a wait for a lock.
  void LetForkPass() const noexcept {
    // Relaxed: who sees it late only makes the fork try once more.
    if (mCount == 0 && sbCollectedByFork.load(std::memory_order_relaxed)) Pause();
  }

  void Add() noexcept { ++mCount; }
  void Remove() noexcept { --mCount; }

 private:
  static void Pause() noexcept;

  // In the part of thread storage that is laid out at start, where it is reached without a call. That part is
  // small, and so is this.
  [[gnu::tls_model("initial-exec")]] static constinit thread_local HeldLocks sThis;
  static constinit std::atomic<bool> sbCollectedByFork;

  unsigned mCount = 0;
};

}  // namespace YSynch

#pragma once

#include <atomic>

namespace YSynch {

/// How many locks of this library a thread holds.
///
/// While a fork collects the locks, a thread that holds none waits a little before it takes one, so that
/// locks become free and stay free. A thread that holds one continues, because it may need another to release
/// the first.
class HeldLocks {
 public:
  constexpr HeldLocks() noexcept = default;
  HeldLocks(const HeldLocks&) = delete;
  HeldLocks& operator=(const HeldLocks&) = delete;

  /// The count of the calling thread. Its address identifies the thread: no other living thread has it, and
  /// it stays the same in a child of a fork.
  static HeldLocks& OfThisThread() noexcept { return sThis; }

  static void SetCollectedByFork(bool collected) noexcept {
    sbCollectedByFork.store(collected, std::memory_order_relaxed);
  }

  /// To be called before a wait for a lock.
  void LetForkPass() const noexcept {
    // Relaxed: a thread that sees it late only makes the fork try once more.
    if (mCount == 0 && sbCollectedByFork.load(std::memory_order_relaxed)) Pause();
  }

  void Add() noexcept { ++mCount; }
  void Remove() noexcept { --mCount; }

 private:
  static void Pause() noexcept;

  // In the static part of thread-local storage, where it is accessed without a call. That part is small, and
  // so is this.
  [[gnu::tls_model("initial-exec")]] static constinit thread_local HeldLocks sThis;
  static constinit std::atomic<bool> sbCollectedByFork;

  unsigned mCount = 0;
};

}  // namespace YSynch

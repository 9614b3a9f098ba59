#pragma once

#include <atomic>

namespace YSynch {

/// A number that threads change without a lock, with the operations of a reference count.
class AtomicLong {
 public:
  constexpr explicit AtomicLong(long value = 0) noexcept : mValue(value) {}
  AtomicLong(const AtomicLong&) = delete;
  AtomicLong& operator=(const AtomicLong&) = delete;
  ~AtomicLong() = default;

  /// Relaxed: a snapshot, for assertions and tests.
  long Get() const noexcept { return mValue.load(std::memory_order_relaxed); }

  /// Relaxed: a thread that adds a reference already holds one, so this need not make anything visible.
  long Increment() noexcept { return mValue.fetch_add(1, std::memory_order_relaxed) + 1; }

  /// Release, so that what this thread did to the object is complete before another destroys it; acquire, so
  /// that the thread that destroys it sees what all others did.
  long Decrement() noexcept { return mValue.fetch_sub(1, std::memory_order_acq_rel) - 1; }

  /// Adds 1 unless the value is 0 or less, and returns whether it did. Relaxed, like `Increment`: success
  /// means that there is another reference.
  bool IncrementIfPositive() noexcept {
    long value = mValue.load(std::memory_order_relaxed);
    while (value > 0) {
      if (mValue.compare_exchange_weak(value, value + 1, std::memory_order_relaxed)) return true;
    }
    return false;
  }

  /// Relaxed: for values that order nothing else.
  void Set(long value) noexcept { mValue.store(value, std::memory_order_relaxed); }

 private:
  std::atomic<long> mValue;
};

}  // namespace YSynch

#pragma once

#include <atomic>

#include <YSynch/Export.h>

namespace YSynch {

/// A lock that no child of a fork inherits in a locked state.
///
/// All such locks of the process are in one list. Before a fork, the forking thread takes each of them, in
/// whatever order they become free, so that nothing that they guard is half changed in the child. After the
/// fork, both processes release them.
///
/// Ownership: the lock is in the list from `Join` to `Leave`; the list does not own it. The stacks of the
/// parent's other threads are reused in the child, so a lock must be on the heap or in static storage.
///
/// Threads: a thread may hold other locks while it waits for a fork to finish, or for a fork that is using a
/// lock which the thread is about to destroy: the fork waits for those locks, and holds none meanwhile.
class YSYNCH_EXPORT ForkSafeLock {
 public:
  ForkSafeLock(const ForkSafeLock&) = delete;
  ForkSafeLock& operator=(const ForkSafeLock&) = delete;

 protected:
  constexpr ForkSafeLock() noexcept = default;
  virtual ~ForkSafeLock();

  /// A fork may take the lock from now on. To be called before the lock is taken for the first time; later
  /// calls do nothing.
  void Join() noexcept {
    // Relaxed: a thread that still finds it false asks again under the lock of the list.
    if (!mbJoined.load(std::memory_order_relaxed)) JoinList();
  }
  /// To be called first by the destructor of the final class. Waits for a fork that is waiting for the lock.
  void Leave() noexcept;

 private:
  friend class ForkGate;
  friend class IntrusiveList;

  /// Never waits.
  virtual bool TryLockForFork() noexcept = 0;
  virtual void LockForFork() noexcept = 0;
  virtual void UnlockAfterFork() noexcept = 0;
  /// As `UnlockAfterFork`, but in a child, where the thread that took the lock has a new number in the
  /// kernel.
  virtual void UnlockInChild() noexcept { UnlockAfterFork(); }

  void JoinList() noexcept;

  std::atomic<bool> mbJoined{false};
  ForkSafeLock* mpPrevious = nullptr;
  ForkSafeLock* mpNext = nullptr;
};

}  // namespace YSynch

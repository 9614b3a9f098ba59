#pragma once

#include <atomic>

#include <YSynch/Export.h>

namespace YSynch {

/// A lock that no child of a fork inherits in a locked state.
///
/// All of them stand in one list of the process. Before a fork the forking thread takes every one of them,
/// in whatever order they come free, so that nothing they guard is half changed in the child; after it they
/// are given back on both sides.
///
/// Ownership: in the list from `Join` to `Leave`; nobody owns it. The stacks of the parent's other threads
/// are used again in the child, so a lock belongs on the heap or in static storage.
///
/// Threads: while a thread waits for a fork to finish, or to let go of a lock it is about to destroy, it may
/// hold other locks: the fork lets those pass first.
class YSYNCH_EXPORT ForkSafeLock {
 public:
  ForkSafeLock(const ForkSafeLock&) = delete;
  ForkSafeLock& operator=(const ForkSafeLock&) = delete;

 protected:
  constexpr ForkSafeLock() noexcept = default;
  virtual ~ForkSafeLock();

  /// A fork may take the lock from now on. To be called before the lock is first taken; later calls do
  /// nothing.
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
  /// As `UnlockAfterFork`, in a child, where the kernel knows the thread that took the lock by a new number.
  virtual void UnlockInChild() noexcept { UnlockAfterFork(); }

  void JoinList() noexcept;

  std::atomic<bool> mbJoined{false};
  ForkSafeLock* mpPrevious = nullptr;
  ForkSafeLock* mpNext = nullptr;
};

}  // namespace YSynch

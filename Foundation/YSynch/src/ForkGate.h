#pragma once

#include <pthread.h>

#include <YSynch/ForkParticipant.h>
#include <YSynch/ForkSafeLock.h>

#include "Mutex.h"

namespace YSynch {

/// Holds every lock of the library during a fork, and notifies the participants. There is one in the process,
/// which is usable before any code has run and is never destroyed.
///
/// Why no order of locks can make it wait forever: a forking thread waits without a bound only for another
/// fork, or for one lock while it holds neither another lock nor the gate. So the holder of that lock can
/// continue, even if it needs another lock, or creates or destroys one. Every other lock is only tried, and
/// if one is busy, all are released. This ends because threads that hold no lock wait a little in the
/// meantime (see `HeldLocks`).
///
/// A lock that a fork waits for is not destroyed in the meantime: `Remove` waits for the fork. That wait is
/// short, because no thread holds a lock that is being destroyed.
class ForkGate {
 public:
  constexpr ForkGate() noexcept = default;

  void RegisterHandlers() noexcept;
  void Add(ForkSafeLock& lock) noexcept;
  void Remove(ForkSafeLock& lock) noexcept;
  void Add(ForkParticipant& participant) noexcept;
  void Remove(ForkParticipant& participant) noexcept;

  void PrepareFork() noexcept YSYNCH_ACQUIRE(mForks, mMutex);
  void FinishInParent() noexcept YSYNCH_RELEASE(mForks, mMutex);
  void FinishInChild() noexcept YSYNCH_RELEASE(mForks, mMutex);

 private:
  ForkParticipant* FindUnnotified() const noexcept YSYNCH_REQUIRES(mMutex);
  void Notify(ForkParticipant& participant) noexcept YSYNCH_REQUIRES(mMutex);
  ForkSafeLock* TakeAllBut(ForkSafeLock* held) noexcept YSYNCH_REQUIRES(mMutex);
  static void ReleaseTakenLocks(ForkSafeLock* last, ForkSafeLock* held) noexcept;
  void WaitFor(ForkSafeLock& lock) noexcept YSYNCH_REQUIRES(mMutex);
  void Unpin() noexcept YSYNCH_REQUIRES(mMutex);
  void FinishFork() noexcept YSYNCH_RELEASE(mForks, mMutex);

  // One fork at a time. Taken before everything else, and by forking threads only.
  Mutex mForks;
  // Also held during the fork itself, so that no lock is created or destroyed.
  Mutex mMutex;
  pthread_cond_t mUnpinned = PTHREAD_COND_INITIALIZER;
  bool mbHandlersAreRegistered YSYNCH_GUARDED_BY(mMutex) = false;
  ForkSafeLock* mpLocks YSYNCH_GUARDED_BY(mMutex) = nullptr;
  ForkParticipant* mpParticipants YSYNCH_GUARDED_BY(mMutex) = nullptr;
  // The lock or participant that the forking thread uses without holding the mutex. It must not be destroyed.
  const void* mpPinned YSYNCH_GUARDED_BY(mMutex) = nullptr;
};

}  // namespace YSynch

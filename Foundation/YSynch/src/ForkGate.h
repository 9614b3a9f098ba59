#pragma once

#include <pthread.h>

#include <YSynch/ForkParticipant.h>
#include <YSynch/ForkSafeLock.h>

#include "Mutex.h"

namespace YSynch {

/// Holds every lock of the library over a fork, and tells the participants of it. The process has one, which
/// is ready before any code has run and is never destroyed.
///
/// Why no order of locks can make it wait for ever: a forking thread waits without a bound only for another
/// fork, which holds nothing of its thread's own, and for one lock at a time, while it holds no other lock
/// and not the gate either; so whoever holds that lock can go on, even if that takes another lock, or makes
/// or destroys one. Every other lock is only tried, and where one is busy, all are given back. The rounds
/// come to an end because threads that hold no lock make way meanwhile (see `HeldLocks`).
///
/// A lock whose holder is awaited is not destroyed meanwhile: `Remove` waits, which is short, because nobody
/// holds a lock that is being destroyed.
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
  ForkParticipant* FindUntold() const noexcept YSYNCH_REQUIRES(mMutex);
  void Tell(ForkParticipant& participant) noexcept YSYNCH_REQUIRES(mMutex);
  ForkSafeLock* TakeAllBut(ForkSafeLock* held) noexcept YSYNCH_REQUIRES(mMutex);
  static void GiveBack(ForkSafeLock* last, ForkSafeLock* held) noexcept;
  void WaitFor(ForkSafeLock& lock) noexcept YSYNCH_REQUIRES(mMutex);
  void Unpin() noexcept YSYNCH_REQUIRES(mMutex);
  void LetGo() noexcept YSYNCH_RELEASE(mForks, mMutex);

  // One fork at a time. Taken before everything else, and by forking threads only.
  Mutex mForks;
  // Also held over the fork itself, so that no lock is made or destroyed meanwhile.
  Mutex mMutex;
  pthread_cond_t mUnpinned = PTHREAD_COND_INITIALIZER;
  bool mbHandlersAreRegistered YSYNCH_GUARDED_BY(mMutex) = false;
  ForkSafeLock* mpLocks YSYNCH_GUARDED_BY(mMutex) = nullptr;
  ForkParticipant* mpParticipants YSYNCH_GUARDED_BY(mMutex) = nullptr;
  // What the forking thread uses without holding the mutex, and what must therefore not go away.
  const void* mpPinned YSYNCH_GUARDED_BY(mMutex) = nullptr;
};

}  // namespace YSynch

#include "ForkGate.h"

#include <utility>

#include "HeldLocks.h"
#include "IntrusiveList.h"

namespace YSynch {
namespace {

constinit ForkGate gsForkGate;

void Prepare() YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  gsForkGate.PrepareFork();
}
void FinishInParent() YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  gsForkGate.FinishInParent();
}
void FinishInChild() YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  gsForkGate.FinishInChild();
}

// Registered when the library is loaded, at the latest. Handlers that are registered later, and that may take
// locks of this library, then run while the gate holds none: before it takes them and after it releases them.
[[maybe_unused]] const bool gsbRegisteredAtLoad = (gsForkGate.RegisterHandlers(), true);

}  // namespace

ForkSafeLock::~ForkSafeLock() = default;
void ForkSafeLock::JoinList() noexcept {
  gsForkGate.Add(*this);
}
void ForkSafeLock::Leave() noexcept {
  if (mbJoined.load(std::memory_order_relaxed)) gsForkGate.Remove(*this);
}

ForkParticipant::~ForkParticipant() = default;
void ForkParticipant::Join() noexcept {
  gsForkGate.Add(*this);
}
void ForkParticipant::Leave() noexcept {
  gsForkGate.Remove(*this);
}

/// Called for the first lock or participant, which may be created before the static objects of this file.
void ForkGate::RegisterHandlers() noexcept {
  const MutexLock guard(mMutex);
  if (std::exchange(mbHandlersAreRegistered, true)) return;
  YBase::Check(pthread_atfork(YSynch::Prepare, YSynch::FinishInParent, YSynch::FinishInChild));
}

void ForkGate::Add(ForkSafeLock& lock) noexcept {
  RegisterHandlers();
  const MutexLock guard(mMutex);
  if (lock.mbJoined.exchange(true, std::memory_order_relaxed)) return;
  IntrusiveList::Add(&mpLocks, lock);
}

void ForkGate::Remove(ForkSafeLock& lock) noexcept {
  const MutexLock guard(mMutex);
  while (mpPinned == &lock) mMutex.Wait(mUnpinned);
  IntrusiveList::Remove(&mpLocks, lock);
}

void ForkGate::Add(ForkParticipant& participant) noexcept {
  RegisterHandlers();
  const MutexLock guard(mMutex);
  IntrusiveList::Add(&mpParticipants, participant);
}

void ForkGate::Remove(ForkParticipant& participant) noexcept {
  const MutexLock guard(mMutex);
  while (mpPinned == &participant) mMutex.Wait(mUnpinned);
  IntrusiveList::Remove(&mpParticipants, participant);
}

/// Ends with every participant notified and every lock held.
///
/// Each round tries all locks. If one is busy, the round releases what it has taken and waits for that lock
/// alone, and the next round begins with it held. A participant may join, and threads may take locks, while
/// the mutex is released for the wait. So participants are checked again in each round, and are notified
/// while no lock is held, because their handlers may take locks.
void ForkGate::PrepareFork() noexcept {
  mForks.Lock();
  mMutex.Lock();
  // The fork counts as a lock of this thread, so that the thread does not make way for its own fork.
  HeldLocks::OfThisThread().Add();
  for (ForkSafeLock* held = nullptr;;) {
    if (ForkParticipant* participant = FindUnnotified()) {
      if (held != nullptr) std::exchange(held, nullptr)->UnlockAfterFork();
      Notify(*participant);
      continue;
    }
    HeldLocks::SetCollectedByFork(true);
    ForkSafeLock* busy = TakeAllBut(held);
    if (busy == nullptr) return;
    WaitFor(*busy);
    held = busy;
  }
}

void ForkGate::FinishInParent() noexcept {
  for (ForkParticipant* participant = mpParticipants; participant != nullptr;
       participant = participant->mpNext) {
    participant->mbIsNotified = false;
    participant->AfterForkInParent();
  }
  for (ForkSafeLock* lock = mpLocks; lock != nullptr; lock = lock->mpNext) lock->UnlockAfterFork();
  FinishFork();
}

void ForkGate::FinishInChild() noexcept {
  for (ForkParticipant* participant = mpParticipants; participant != nullptr;
       participant = participant->mpNext) {
    participant->mbIsNotified = false;
    participant->AfterForkInChild();
  }
  for (ForkSafeLock* lock = mpLocks; lock != nullptr; lock = lock->mpNext) lock->UnlockInChild();
  // Initialised again, because the threads that waited for it do not exist in the child.
  YBase::Check(pthread_cond_init(&mUnpinned, nullptr));
  FinishFork();
}

void ForkGate::FinishFork() noexcept {
  HeldLocks::SetCollectedByFork(false);
  HeldLocks::OfThisThread().Remove();
  mMutex.Unlock();
  mForks.Unlock();
}

/// A participant that has not been notified: at first any, later one that joined while a lock was awaited.
ForkParticipant* ForkGate::FindUnnotified() const noexcept {
  ForkParticipant* participant = mpParticipants;
  while (participant != nullptr && participant->mbIsNotified) participant = participant->mpNext;
  return participant;
}

void ForkGate::Notify(ForkParticipant& participant) noexcept {
  participant.mbIsNotified = true;
  mpPinned = &participant;
  mMutex.Unlock();
  participant.BeforeFork();
  mMutex.Lock();
  Unpin();
}

/// Takes every lock but `held`, which is held already, and returns null. If one is busy, releases all of
/// them, `held` included, and returns the busy one.
ForkSafeLock* ForkGate::TakeAllBut(ForkSafeLock* held) noexcept {
  for (ForkSafeLock* lock = mpLocks; lock != nullptr; lock = lock->mpNext) {
    if (lock == held || lock->TryLockForFork()) continue;
    ReleaseTakenLocks(lock->mpPrevious, held);
    return lock;
  }
  return nullptr;
}

/// Releases the locks up to `last` in the list, and `held`.
void ForkGate::ReleaseTakenLocks(ForkSafeLock* last, ForkSafeLock* held) noexcept {
  for (ForkSafeLock* lock = last; lock != nullptr; lock = lock->mpPrevious) {
    if (lock != held) lock->UnlockAfterFork();
  }
  if (held != nullptr) held->UnlockAfterFork();
}

void ForkGate::WaitFor(ForkSafeLock& lock) noexcept {
  mpPinned = &lock;
  mMutex.Unlock();
  lock.LockForFork();
  mMutex.Lock();
  Unpin();
}

void ForkGate::Unpin() noexcept {
  mpPinned = nullptr;
  YBase::Check(pthread_cond_broadcast(&mUnpinned));
}

}  // namespace YSynch

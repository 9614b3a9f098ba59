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

// At load at the latest. Handlers that others register later, and that may take locks of this library, then
// run while none is held here, before and after the fork.
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

/// With the first lock or participant, which may be made before the static objects of this file.
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

void ForkGate::PrepareFork() noexcept {
  mForks.Lock();
  mMutex.Lock();
  // Counts as a lock, so that the forking thread does not wait for itself.
  HeldLocks::OfThisThread().Add();
  for (ForkSafeLock* held = nullptr;;) {
    if (ForkParticipant* participant = FindUntold()) {
      if (held != nullptr) std::exchange(held, nullptr)->UnlockAfterFork();
      Tell(*participant);
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
    participant->mbKnowsOfFork = false;
    participant->AfterForkInParent();
  }
  for (ForkSafeLock* lock = mpLocks; lock != nullptr; lock = lock->mpNext) lock->UnlockAfterFork();
  LetGo();
}

void ForkGate::FinishInChild() noexcept {
  for (ForkParticipant* participant = mpParticipants; participant != nullptr;
       participant = participant->mpNext) {
    participant->mbKnowsOfFork = false;
    participant->AfterForkInChild();
  }
  for (ForkSafeLock* lock = mpLocks; lock != nullptr; lock = lock->mpNext) lock->UnlockInChild();
  // Made anew, because the threads that waited for it are not here.
  YBase::Check(pthread_cond_init(&mUnpinned, nullptr));
  LetGo();
}

void ForkGate::LetGo() noexcept {
  HeldLocks::SetCollectedByFork(false);
  HeldLocks::OfThisThread().Remove();
  mMutex.Unlock();
  mForks.Unlock();
}

/// Somebody who has not heard of the fork: at first everybody, later who joined while a lock was awaited.
ForkParticipant* ForkGate::FindUntold() const noexcept {
  ForkParticipant* participant = mpParticipants;
  while (participant != nullptr && participant->mbKnowsOfFork) participant = participant->mpNext;
  return participant;
}

void ForkGate::Tell(ForkParticipant& participant) noexcept {
  participant.mbKnowsOfFork = true;
  mpPinned = &participant;
  mMutex.Unlock();
  participant.BeforeFork();
  mMutex.Lock();
  Unpin();
}

/// Takes every lock that is not held already and returns null. Where one stays busy, gives all back, the
/// held one, too, and returns the busy one.
ForkSafeLock* ForkGate::TakeAllBut(ForkSafeLock* held) noexcept {
  for (ForkSafeLock* lock = mpLocks; lock != nullptr; lock = lock->mpNext) {
    if (lock == held || lock->TryLockForFork()) continue;
    GiveBack(lock->mpPrevious, held);
    return lock;
  }
  return nullptr;
}

/// Gives back a lock and all before it, and the one that was held from the beginning.
void ForkGate::GiveBack(ForkSafeLock* last, ForkSafeLock* held) noexcept {
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

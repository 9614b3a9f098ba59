#include <YBase/Check.h>

#include <YSynch/CriticalSection.h>

#include <cassert>
#include <cerrno>

#include "HeldLocks.h"

namespace YSynch {

CriticalSection::~CriticalSection() {
  Leave();
  YBase::Check(pthread_mutex_destroy(&mMutex));
}

void CriticalSection::Lock() noexcept {
  HeldLocks& mine = HeldLocks::OfThisThread();
  if (mpOwner.load(std::memory_order_relaxed) != &mine) {
    mine.LetForkPass();
    Join();
    YBase::Check(pthread_mutex_lock(&mMutex));
    mpOwner.store(&mine, std::memory_order_relaxed);
    mine.Add();
  }
  ++mDepth;
}

bool CriticalSection::TryLock() noexcept {
  HeldLocks& mine = HeldLocks::OfThisThread();
  if (mpOwner.load(std::memory_order_relaxed) != &mine) {
    Join();
    const int error = pthread_mutex_trylock(&mMutex);
    if (error == EBUSY) return false;
    YBase::Check(error);
    mpOwner.store(&mine, std::memory_order_relaxed);
    mine.Add();
  }
  ++mDepth;
  return true;
}

void CriticalSection::Unlock() noexcept {
  HeldLocks& mine = HeldLocks::OfThisThread();
  if (mpOwner.load(std::memory_order_relaxed) != &mine) {
    assert(false && "a critical section was given back by a thread that does not hold it");
    return;
  }
  if (--mDepth != 0) return;
  mine.Remove();
  mpOwner.store(nullptr, std::memory_order_relaxed);
  YBase::Check(pthread_mutex_unlock(&mMutex));
}

// Taken before the fork and released after it, which the analysis cannot follow.
bool CriticalSection::TryLockForFork() noexcept {
  return TryLock();
}
void CriticalSection::LockForFork() noexcept YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  Lock();
}
void CriticalSection::UnlockAfterFork() noexcept YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  Unlock();
}

YBase::StrongPtr<CriticalSection> CreateCriticalSection(EnumORBLockStackCategory category) {
  return std::make_unique<CriticalSection>(category);
}

}  // namespace YSynch

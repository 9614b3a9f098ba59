#include <YBase/Check.h>

#include <YSynch/RWLock.h>

#include <cerrno>

#include "HeldLocks.h"
#include "WriterPreference.h"

namespace YSynch {
namespace {

void Initialize(pthread_rwlock_t& lock) noexcept {
  pthread_rwlockattr_t attributes;
  YBase::Check(pthread_rwlockattr_init(&attributes));
  PreferWriters(attributes);
  YBase::Check(pthread_rwlock_init(&lock, &attributes));
  YBase::Check(pthread_rwlockattr_destroy(&attributes));
}

}  // namespace

RWLock::RWLock(EnumORBLockStackCategory category) noexcept : mCategory(category) {
  Initialize(mLock);
  Join();
}

RWLock::~RWLock() {
  Leave();
  YBase::Check(pthread_rwlock_destroy(&mLock));
}

void RWLock::LockRead() noexcept {
  HeldLocks& mine = HeldLocks::OfThisThread();
  mine.LetForkPass();
  YBase::Check(pthread_rwlock_rdlock(&mLock));
  mine.Add();
}

void RWLock::UnlockRead() noexcept {
  HeldLocks::OfThisThread().Remove();
  YBase::Check(pthread_rwlock_unlock(&mLock));
}

void RWLock::LockWrite() noexcept {
  HeldLocks& mine = HeldLocks::OfThisThread();
  mine.LetForkPass();
  YBase::Check(pthread_rwlock_wrlock(&mLock));
  mine.Add();
}

void RWLock::UnlockWrite() noexcept {
  HeldLocks::OfThisThread().Remove();
  YBase::Check(pthread_rwlock_unlock(&mLock));
}

bool RWLock::TryLockForFork() noexcept {
  const int error = pthread_rwlock_trywrlock(&mLock);
  if (error == EBUSY) return false;
  YBase::Check(error);
  return true;
}

void RWLock::LockForFork() noexcept {
  YBase::Check(pthread_rwlock_wrlock(&mLock));
}

void RWLock::UnlockAfterFork() noexcept {
  YBase::Check(pthread_rwlock_unlock(&mLock));
}

void RWLock::UnlockInChild() noexcept {
  // The C library may identify a writer by the kernel's ID of its thread, and that of the forking thread is
  // different in the child. Unlocking would then treat it as a reader. So the lock is initialised again.
  YBase::Check(pthread_rwlock_unlock(&mLock));
  YBase::Check(pthread_rwlock_destroy(&mLock));
  Initialize(mLock);
}

}  // namespace YSynch

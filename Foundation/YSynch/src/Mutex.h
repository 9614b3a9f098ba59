#pragma once

#include <YBase/CancellationGuard.h>
#include <YBase/Check.h>
#include <pthread.h>

#include <YSynch/ThreadAnnotations.h>

namespace YSynch {

/// A plain lock that is usable before any code has run and need not be destroyed. The locks of this library
/// are built on it.
class YSYNCH_CAPABILITY("mutex") Mutex {
 public:
  constexpr Mutex() noexcept = default;
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  void Lock() noexcept YSYNCH_ACQUIRE() { YBase::Check(pthread_mutex_lock(&mMutex)); }
  void Unlock() noexcept YSYNCH_RELEASE() { YBase::Check(pthread_mutex_unlock(&mMutex)); }
  /// Releases the lock, sleeps until the condition is signalled, and takes the lock again.
  void Wait(pthread_cond_t& condition) noexcept YSYNCH_REQUIRES(this) {
    const YBase::CancellationGuard cancellationGuard;
    YBase::Check(pthread_cond_wait(&condition, &mMutex));
  }

 private:
  pthread_mutex_t mMutex = PTHREAD_MUTEX_INITIALIZER;
};

class YSYNCH_SCOPED_CAPABILITY MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) noexcept YSYNCH_ACQUIRE(mutex) : mMutex(mutex) { mMutex.Lock(); }
  ~MutexLock() YSYNCH_RELEASE() { mMutex.Unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex& mMutex;
};

}  // namespace YSynch

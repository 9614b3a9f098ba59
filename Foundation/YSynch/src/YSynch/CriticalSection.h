#pragma once

#include <pthread.h>

#include <atomic>

#include <YBase/StrongPtr.h>
#include <YSynch/Export.h>
#include <YSynch/ForkSafeLock.h>
#include <YSynch/LockStackCategory.h>
#include <YSynch/ThreadAnnotations.h>

namespace YSynch {

class HeldLocks;

/// A lock that the thread that holds it may take again. It is free when it has been released as often as it
/// was taken.
///
/// Threads: any. A fork waits until no other thread holds it; the child inherits it as the forking thread
/// left it.
/// \pre A thread forks while holding one only if no other thread forks: the two would wait for each other.
class YSYNCH_EXPORT YSYNCH_CAPABILITY("critical section") CriticalSection final : private ForkSafeLock {
 public:
  class SmartLock;

  /// Constant-initialised in static storage, so that it can be taken before any code of the library has run.
  constexpr explicit CriticalSection(EnumORBLockStackCategory category) noexcept : mCategory(category) {}
  ~CriticalSection() override;

  /// Waits without a time limit.
  void Lock() noexcept YSYNCH_ACQUIRE();
  /// \pre The calling thread holds it.
  void Unlock() noexcept YSYNCH_RELEASE();
  bool TryLock() noexcept YSYNCH_TRY_ACQUIRE(true);

 private:
  bool TryLockForFork() noexcept override;
  void LockForFork() noexcept override;
  void UnlockAfterFork() noexcept override;

  // For inspection in a debugger.
  [[maybe_unused]] const EnumORBLockStackCategory mCategory;
  pthread_mutex_t mMutex = PTHREAD_MUTEX_INITIALIZER;
  // Identifies the thread that holds it. Relaxed: a thread only asks whether it is itself the owner, and only
  // that thread can have written the answer.
  std::atomic<const HeldLocks*> mpOwner{nullptr};
  unsigned mDepth = 0;
};

/// Holds a critical section as long as it exists.
class YSYNCH_EXPORT YSYNCH_SCOPED_CAPABILITY CriticalSection::SmartLock {
 public:
  explicit SmartLock(CriticalSection& section) noexcept YSYNCH_ACQUIRE(section) : mSection(section) {
    mSection.Lock();
  }
  ~SmartLock() YSYNCH_RELEASE() { mSection.Unlock(); }
  SmartLock(const SmartLock&) = delete;
  SmartLock& operator=(const SmartLock&) = delete;

 private:
  CriticalSection& mSection;
};

/// Failure: `std::bad_alloc`.
YSYNCH_EXPORT YBase::StrongPtr<CriticalSection> CreateCriticalSection(EnumORBLockStackCategory category);

}  // namespace YSynch

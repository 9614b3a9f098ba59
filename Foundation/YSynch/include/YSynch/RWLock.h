#pragma once

#include <pthread.h>

#include <YSynch/Export.h>
#include <YSynch/ForkSafeLock.h>
#include <YSynch/LockStackCategory.h>
#include <YSynch/ThreadAnnotations.h>

namespace YSynch {

/// A lock that several threads may hold for reading, or one for writing.
///
/// Not re-entrant in either way. A waiting writer precedes readers that arrive later, so that a stream of
/// readers cannot keep it waiting.
///
/// Threads: any. A fork waits until no thread holds it; in the child it is free.
/// \pre The thread that forks does not itself hold it: it would wait for itself.
class YSYNCH_EXPORT YSYNCH_CAPABILITY("read-write lock") RWLock final : private ForkSafeLock {
 public:
  class ReadSmartLock;
  class WriteSmartLock;

  explicit RWLock(EnumORBLockStackCategory category) noexcept;
  ~RWLock() override;

  void LockRead() noexcept YSYNCH_ACQUIRE_SHARED();
  void UnlockRead() noexcept YSYNCH_RELEASE_SHARED();
  void LockWrite() noexcept YSYNCH_ACQUIRE();
  void UnlockWrite() noexcept YSYNCH_RELEASE();

 private:
  bool TryLockForFork() noexcept override;
  void LockForFork() noexcept override;
  void UnlockAfterFork() noexcept override;
  void UnlockInChild() noexcept override;

  // For inspection in a debugger.
  [[maybe_unused]] const EnumORBLockStackCategory mCategory;
  pthread_rwlock_t mLock;
};

/// Holds a lock for reading as long as it exists.
class YSYNCH_EXPORT YSYNCH_SCOPED_CAPABILITY RWLock::ReadSmartLock {
 public:
  explicit ReadSmartLock(RWLock& lock) noexcept YSYNCH_ACQUIRE_SHARED(lock) : mLock(lock) {
    mLock.LockRead();
  }
  ~ReadSmartLock() YSYNCH_RELEASE_GENERIC() { mLock.UnlockRead(); }
  ReadSmartLock(const ReadSmartLock&) = delete;
  ReadSmartLock& operator=(const ReadSmartLock&) = delete;

 private:
  RWLock& mLock;
};

/// Holds a lock for writing as long as it exists.
class YSYNCH_EXPORT YSYNCH_SCOPED_CAPABILITY RWLock::WriteSmartLock {
 public:
  explicit WriteSmartLock(RWLock& lock) noexcept YSYNCH_ACQUIRE(lock) : mLock(lock) { mLock.LockWrite(); }
  ~WriteSmartLock() YSYNCH_RELEASE() { mLock.UnlockWrite(); }
  WriteSmartLock(const WriteSmartLock&) = delete;
  WriteSmartLock& operator=(const WriteSmartLock&) = delete;

 private:
  RWLock& mLock;
};

}  // namespace YSynch

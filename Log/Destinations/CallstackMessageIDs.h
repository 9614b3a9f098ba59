#pragma once

#include <atomic>
#include <set>

#include <YSynch/RWLock.h>

namespace YLog {

/// The messages whose records show the call stack.
///
/// Threads: any.
class CallstackMessageIDs {
 public:
  /// Replaces the IDs.
  ///
  /// Failure: `std::bad_alloc`; the IDs stay as they were.
  void Set(const unsigned* ids, unsigned count);

  /// False for 0, which means no ID. If there are no IDs this costs one load.
  bool Contains(unsigned id) const;

 private:
  // Relaxed: a change may be seen late, and the IDs themselves are read under the lock.
  std::atomic<bool> mbAny{false};
  mutable YSynch::RWLock mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  std::set<unsigned> mIDs YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YLog

#pragma once

#include <atomic>
#include <set>

#include <YBase/StrongPtr.h>
#include <YSynch/RWLock.h>

namespace YLog {

/// The messages whose records show the call stack.
///
/// Threads: any.
class CallstackMessageIDs {
 public:
  CallstackMessageIDs();

  /// Takes the IDs in place of those before.
  ///
  /// Failure: `std::bad_alloc`; those before then stay.
  void Set(const unsigned* ids, unsigned count);

  /// False for 0, which stands for no ID. Where there are no IDs this costs one load.
  bool Contains(unsigned id) const;

 private:
  // Relaxed: a change may be seen late, and the IDs themselves are read under the lock.
  std::atomic<bool> mbAny{false};
  const YBase::StrongPtr<YSynch::RWLock> mpLock;
  std::set<unsigned> mIDs YSYNCH_GUARDED_BY(*mpLock);
};

}  // namespace YLog

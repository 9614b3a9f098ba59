#pragma once

#include <map>
#include <utility>
#include <vector>

#include <YSynch/CriticalSection.h>
#include <YSynch/RWLock.h>

namespace YLog {

/// The figures of a trace object: the current ones of each thread, and the snapshots collected from them.
///
/// Threads: any. Reports hold the trace object's lock for reading, so different threads do not wait for each
/// other. Collecting and clearing hold it for writing.
template <class Key, class Item>
class TraceTable {
 public:
  using Items = std::map<Key, Item>;

  /// \pre The lock outlives the table.
  explicit TraceTable(YSynch::RWLock& lock) noexcept : mLock(lock) {}
  TraceTable(const TraceTable&) = delete;
  TraceTable& operator=(const TraceTable&) = delete;

  /// Calls `fold` with the thread's item, with locks held. The item is created if there is none.
  template <class Fold>
  void Update(unsigned long threadId, const Key& key, const Fold& fold) {
    if (UpdateIfThreadIsKnown(threadId, key, fold)) return;
    // Updated under the write lock at once: if it were looked up again under the read lock, a collection
    // could always come first.
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    mCurrent[threadId].Update(key, fold);
  }

  Items GetItems(unsigned long threadId) {
    const YSynch::RWLock::ReadSmartLock lock(mLock);
    const auto thread = mCurrent.find(threadId);
    return thread != mCurrent.end() ? thread->second.Copy() : Items();
  }

  /// Adds the current items up with `merge(combined, item)`, makes a snapshot of the sums and clears the
  /// current items.
  template <class Merge>
  void Collect(const Merge& merge) {
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    Items combined;
    for (auto& [threadId, items] : mCurrent) items.MergeInto(combined, merge);
    mSnapshots.push_back(std::move(combined));
    mCurrent.clear();
  }

  /// Moves the snapshots out of the table.
  std::vector<Items> TakeSnapshots() {
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    return std::exchange(mSnapshots, {});
  }

  void Clear() {
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    mCurrent.clear();
    mSnapshots.clear();
  }

 private:
  /// Has its own lock, because two threads may report under the same ID.
  class ThreadItems {
   public:
    template <class Fold>
    void Update(const Key& key, const Fold& fold) {
      const YSynch::CriticalSection::SmartLock lock(mLock);
      fold(mItems[key]);
    }

    template <class Merge>
    void MergeInto(Items& combined, const Merge& merge) {
      const YSynch::CriticalSection::SmartLock lock(mLock);
      for (const auto& [key, item] : mItems) merge(combined[key], item);
    }

    Items Copy() {
      const YSynch::CriticalSection::SmartLock lock(mLock);
      return mItems;
    }

   private:
    YSynch::CriticalSection mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
    Items mItems YSYNCH_GUARDED_BY(mLock);
  };

  template <class Fold>
  bool UpdateIfThreadIsKnown(unsigned long threadId, const Key& key, const Fold& fold) {
    const YSynch::RWLock::ReadSmartLock lock(mLock);
    const auto thread = mCurrent.find(threadId);
    if (thread == mCurrent.end()) return false;
    thread->second.Update(key, fold);
    return true;
  }

  YSynch::RWLock& mLock;
  std::map<unsigned long, ThreadItems> mCurrent YSYNCH_GUARDED_BY(mLock);
  std::vector<Items> mSnapshots YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YLog

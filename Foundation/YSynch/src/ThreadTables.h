#pragma once

#include <pthread.h>

#include <cstddef>
#include <vector>

#include <YSynch/CriticalSection.h>
#include <YSynch/ForkParticipant.h>
#include <YSynch/ThreadContext.h>

namespace YSynch {

/// The values of all storages for all threads: each thread has a table, and each storage a slot in all of
/// them.
///
/// Threads: a thread reads and writes the values of its own table without a lock. A table is resized under
/// the lock, because a storage that is destroyed removes its values from all tables.
class ThreadTables final : private ForkParticipant {
 public:
  /// The tables of the process: usable before any code has run, and never destroyed.
  static ThreadTables& Get() noexcept;

  constexpr ThreadTables() noexcept = default;

  /// Failure: `std::bad_alloc`; `YBase::ExceptionImpl<YBase::Message>` if the process has no thread-specific
  /// key left.
  std::size_t TakeSlot();
  /// \pre No table holds a value there.
  void GiveSlotBack(std::size_t slot) noexcept;

  /// The calling thread's value, or null.
  static ThreadContext* GetValue(std::size_t slot) noexcept {
    const Table* own = spOwn;
    return own != nullptr && slot < own->mValues.size() ? own->mValues[slot] : nullptr;
  }

  /// The place of the calling thread's value. Failure: `std::bad_alloc`.
  ThreadContext*& GetPlace(std::size_t slot);

  /// Removes the value of some thread from a slot and returns it. Null if no thread has one.
  ThreadContext* TakeValue(std::size_t slot) noexcept;

 private:
  struct Table {
    std::vector<ThreadContext*> mValues;
    // Its thread does not exist in this child of a fork.
    bool mbAbandoned = false;
    Table* mpPrevious = nullptr;
    Table* mpNext = nullptr;
  };

  void CreateKey() YSYNCH_REQUIRES(mLock);
  void CreateTable() YSYNCH_REQUIRES(mLock);
  void Remove(Table& table) noexcept;
  void AfterForkInChild() noexcept override;
  static void EndOfThread(void* own) noexcept;

  // Accessed without a call, like `HeldLocks`.
  [[gnu::tls_model("initial-exec")]] static constinit thread_local Table* spOwn;

  CriticalSection mLock{LOCK_STACK_CATEGORY_CLASS};
  // Created with the first storage and kept for good: threads that end later still need it.
  pthread_key_t mKey YSYNCH_GUARDED_BY(mLock){};
  bool mbKeyExists YSYNCH_GUARDED_BY(mLock) = false;
  std::vector<bool> mSlotsInUse YSYNCH_GUARDED_BY(mLock);
  Table* mpTables YSYNCH_GUARDED_BY(mLock) = nullptr;
};

}  // namespace YSynch

#pragma once

#include <cstddef>

#include <YBase/StrongPtr.h>
#include <YSynch/ThreadContext.h>

namespace YSynch {

/// A slot that holds one `ThreadContext` for each thread.
///
/// Ownership: the storage owns the contexts that are stored in it. It disposes of each with
/// `ThreadContext::Delete`, once: when its thread ends or when the storage is destroyed, whichever comes
/// first. In a child of a fork, the contexts of the parent's other threads are not disposed of, because those
/// threads may have been changing them.
///
/// Threads: each thread sees its own value. A thread must not use the storage while another destroys it, but
/// it may end: its context may then be destroyed a moment later than the storage.
///
/// Reentrancy: `Delete` is called with no lock held, and finds the slot empty.
class ThreadLocalStorage {
 public:
  /// See `CreateThreadLocalStorage`.
  ThreadLocalStorage();
  ~ThreadLocalStorage();
  ThreadLocalStorage(const ThreadLocalStorage&) = delete;
  ThreadLocalStorage& operator=(const ThreadLocalStorage&) = delete;

  /// The calling thread's value, or null.
  ThreadContext* GetValue() const noexcept;

  /// Stores the calling thread's value, and disposes of the previous one. Null empties the slot.
  ///
  /// Failure: `std::bad_alloc`; the value then still belongs to the caller.
  void SetValue(ThreadContext* context);

 private:
  const std::size_t mSlot;
};

/// Failure: `std::bad_alloc`; `YBase::ExceptionImpl<YBase::Message>` if the process has no thread-specific
/// key left.
YBase::StrongPtr<ThreadLocalStorage> CreateThreadLocalStorage();

}  // namespace YSynch

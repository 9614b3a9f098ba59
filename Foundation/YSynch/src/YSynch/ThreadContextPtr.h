#pragma once

#include <YSynch/ThreadLocalStorage.h>

namespace YSynch {

/// The calling thread's context in a storage, made at the thread's first request.
///
/// Ownership: refers to the storage, which must outlive it and owns the contexts. No other kind of context
/// may be put into that storage.
template <class Interface, class Implementation>
class ThreadContextPtr {
 public:
  explicit ThreadContextPtr(ThreadLocalStorage& storage) noexcept : mStorage(storage) {}

  /// Failure: what the context's constructor throws, and `std::bad_alloc`; the slot then stays empty.
  Interface* operator->() const { return Get(); }
  Interface* Get() const {
    // The cast is safe because only this class fills the storage.
    if (ThreadContext* context = mStorage.GetValue()) return static_cast<Implementation*>(context);
    return Create();
  }

  /// The calling thread's context, or null if it has none yet.
  Implementation* GetIfPresent() const noexcept { return static_cast<Implementation*>(mStorage.GetValue()); }

 private:
  Interface* Create() const {
    auto* context = new Implementation;
    try {
      mStorage.SetValue(context);
    } catch (...) {
      context->Delete();
      throw;
    }
    return context;
  }

  ThreadLocalStorage& mStorage;
};

}  // namespace YSynch

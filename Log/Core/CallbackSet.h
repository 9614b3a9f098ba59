#pragma once

#include <map>

#include <YBase/SmartPtrI.h>
#include <YSynch/RWLock.h>

namespace YLog {

/// References to callbacks, each callback once, in the order of their addresses. Null may be registered like
/// any other and is never called.
///
/// Threads: any.
///
/// Reentrancy: callbacks are called, and released, with no lock held.
template <class Callback>
class CallbackSet {
 public:
  void Register(Callback* callback) {
    // Declared before the lock, here and below, so that it is released after the lock.
    const YBase::SmartPtrI<Callback> added(callback);
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    mCallbacks.try_emplace(callback, added);
  }

  void Unregister(const Callback* callback) noexcept {
    typename Callbacks::node_type removed;
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    removed = mCallbacks.extract(callback);
  }

  /// Calls `call` with each callback that is registered at the beginning.
  template <class Function>
  void ForEach(Function call) const {
    for (const auto& entry : Copy()) {
      if (entry.second) call(*entry.second);
    }
  }

 private:
  using Callbacks = std::map<const Callback*, YBase::SmartPtrI<Callback>>;

  Callbacks Copy() const {
    const YSynch::RWLock::ReadSmartLock lock(mLock);
    return mCallbacks;
  }

  mutable YSynch::RWLock mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  Callbacks mCallbacks YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YLog

#pragma once

#include <YBase/SmartPtrI.h>
#include <YSynch/CriticalSection.h>
#include <YSynch/ThreadAnnotations.h>

namespace YLog {

/// The way back from a callback to an object that must not be kept alive by it.
///
/// Ownership: none. The object sets the pointer when it may be called, and takes it back, from
/// `ReferenceCountIsAboutToReachZero`, before it is destroyed.
///
/// Threads: any.
template <class Owner>
class BackPointer {
 public:
  void Set(Owner* owner) noexcept {
    const YSynch::CriticalSection::SmartLock lock(mCS);
    mpOwner = owner;
  }

  /// A reference to the owner; null where there is none, or it is on its way out.
  YBase::SmartPtrI<Owner> Get() noexcept {
    const YSynch::CriticalSection::SmartLock lock(mCS);
    if (mpOwner == nullptr || !mpOwner->TryAddRef()) return nullptr;
    YBase::SmartPtrI<Owner> owner(mpOwner);
    // Not the last: the smart pointer has added one of its own.
    mpOwner->Release();
    return owner;
  }

 private:
  YSynch::CriticalSection mCS{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  Owner* mpOwner YSYNCH_GUARDED_BY(mCS) = nullptr;
};

}  // namespace YLog

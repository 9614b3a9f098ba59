#pragma once

#include <YBase/SmartPtrI.h>
#include <YSynch/CriticalSection.h>
#include <YSynch/ThreadAnnotations.h>

namespace YLog {

/// Leads from a callback to the object that it reports to, without keeping the object alive.
///
/// Ownership: none. The object sets the pointer once it may be called, and clears it in
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

  /// A reference to the owner. Null if there is no owner, or it is being destroyed.
  YBase::SmartPtrI<Owner> Get() noexcept {
    const YSynch::CriticalSection::SmartLock lock(mCS);
    if (mpOwner == nullptr || !mpOwner->TryAddRef()) return nullptr;
    return YBase::SmartPtrI<Owner>::Adopt(mpOwner);
  }

 private:
  YSynch::CriticalSection mCS{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  Owner* mpOwner YSYNCH_GUARDED_BY(mCS) = nullptr;
};

}  // namespace YLog

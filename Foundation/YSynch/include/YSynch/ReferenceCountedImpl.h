#pragma once

#include <cassert>
#include <limits>

#include <YBase/ReferenceCounted.h>
#include <YSynch/AtomicLong.h>

namespace YSynch {

/// The counting half of a counted object: implementations derive from it and from their interface.
///
/// Ownership: the count begins at 0, so that the first holder makes it 1. When it is 0 again, the object
/// calls `ReferenceCountIsAboutToReachZero` and then deletes itself.
///
/// Threads: any thread may add or release a reference that it holds. `Counter` is `AtomicLong` or has its
/// operations.
template <class Counter>
class ReferenceCountedImpl : public virtual YBase::ReferenceCounted {
 public:
  void AddRef() const override { mCount.Increment(); }

  void Release() const override {
    if (mCount.Decrement() != 0) return;
    // Far below 0, so that references that are added and released during the last call neither reach 0 a
    // second time nor let TryAddRef succeed.
    mCount.Set(DYING);
    ReferenceCountIsAboutToReachZero();
    assert(mCount.Get() == DYING && "a dying object was made reachable again");
    Destroy();
  }

  /// Adds a reference unless the count has returned to 0, and returns whether it did. For a caller that has a
  /// plain pointer to an object that may be about to delete itself, and knows that its memory has not been
  /// freed.
  bool TryAddRef() const noexcept { return mCount.IncrementIfPositive(); }

 protected:
  ReferenceCountedImpl() = default;
  ~ReferenceCountedImpl() override = default;

  /// Called once, by the thread that released the last reference, before the object is destroyed. This is the
  /// place to unregister the object from others that refer to it by plain pointer. The object must not be
  /// made reachable again, which debug builds refuse.
  virtual void ReferenceCountIsAboutToReachZero() const {}

 private:
  static constexpr long DYING = std::numeric_limits<long>::min() / 2;

  mutable Counter mCount;
};

}  // namespace YSynch

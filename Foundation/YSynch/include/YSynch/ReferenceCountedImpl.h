#pragma once

#include <cassert>
#include <limits>

#include <YBase/ReferenceCounted.h>
#include <YSynch/AtomicLong.h>

namespace YSynch {

/// The counting half of a counted object: implementations derive from it and from their interface.
///
/// Ownership: the count starts at 0, so that the first holder makes it 1; the object deletes itself when
/// the count comes back to 0, after a call of `ReferenceCountIsAboutToReachZero`.
///
/// Threads: any thread may add or release a reference that it holds. `Counter` is `AtomicLong` or has its
/// operations.
template <class Counter>
class ReferenceCountedImpl : public virtual YBase::ReferenceCounted {
 public:
  void AddRef() const override { mCount.Increment(); }

  void Release() const override {
    if (mCount.Decrement() != 0) return;
    // Far below 0, so that references that come and go during the last call neither reach 0 a second time
    // nor let TryAddRef succeed.
    mCount.Set(DYING);
    ReferenceCountIsAboutToReachZero();
    assert(mCount.Get() == DYING && "a dying object was made reachable again");
    Destroy();
  }

  /// Adds a reference unless the count has already come back to 0, and tells whether it did. For those
  /// who hold a plain pointer to an object that may be on its way out, and know that its memory is still
  /// there.
  bool TryAddRef() const noexcept { return mCount.IncrementIfPositive(); }

 protected:
  ReferenceCountedImpl() = default;
  ~ReferenceCountedImpl() override = default;

  /// Called once, by the thread that released the last reference, before the object is destroyed: the
  /// place to detach from those who know it by plain pointer. It must not make the object reachable again,
  /// which debug builds refuse.
  virtual void ReferenceCountIsAboutToReachZero() const {}

 private:
  static constexpr long DYING = std::numeric_limits<long>::min() / 2;

  mutable Counter mCount;
};

}  // namespace YSynch

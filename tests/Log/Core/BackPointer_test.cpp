#include "Core/BackPointer.h"

#include <functional>
#include <utility>

#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "support/New.h"

namespace {

using Support::New;

/// Runs an action of the test after its last reference is released and before it is destroyed.
class Owner final : public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit Owner(std::function<void()> onLastRelease = nullptr) : mOnLastRelease(std::move(onLastRelease)) {}

  void Release() const override {
    ++mReleases;
    ReferenceCountedImpl::Release();
  }

  mutable int mReleases = 0;

 private:
  ~Owner() override = default;
  void ReferenceCountIsAboutToReachZero() const override {
    if (mOnLastRelease) mOnLastRelease();
  }

  const std::function<void()> mOnLastRelease;
};

TEST(BackPointer, IsNullUntilItIsSetAndAfterItIsReset) {
  YLog::BackPointer<Owner> pointer;
  EXPECT_FALSE(pointer.Get());
  const auto owner = New<Owner>();
  pointer.Set(owner.Get());
  EXPECT_EQ(owner, pointer.Get());
  pointer.Set(nullptr);
  EXPECT_FALSE(pointer.Get());
}

TEST(BackPointer, HoldsNoReferenceButReturnsOne) {
  YLog::BackPointer<Owner> pointer;
  bool released = false;
  auto owner = New<Owner>([&] {
    released = true;
    pointer.Set(nullptr);
  });
  pointer.Set(owner.Get());
  auto given = pointer.Get();
  owner = nullptr;
  EXPECT_FALSE(released);
  given = nullptr;
  EXPECT_TRUE(released);
}

TEST(BackPointer, CountsTheReferenceThatItReturnsOnce) {
  YLog::BackPointer<Owner> pointer;
  const auto owner = New<Owner>();
  pointer.Set(owner.Get());
  const int releases = owner->mReleases;
  const auto given = pointer.Get();
  EXPECT_EQ(given, owner);
  EXPECT_EQ(owner->mReleases, releases);
}

TEST(BackPointer, ReturnsNoReferenceToAnOwnerBeingDestroyed) {
  YLog::BackPointer<Owner> pointer;
  bool asked = false;
  auto owner = New<Owner>([&] {
    asked = true;
    EXPECT_FALSE(pointer.Get());
    pointer.Set(nullptr);
  });
  pointer.Set(owner.Get());
  owner = nullptr;
  EXPECT_TRUE(asked);
}

}  // namespace

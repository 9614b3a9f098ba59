#pragma once

#include <YBase/ReferenceCounted.h>

#include <functional>

/// A counted object that exposes its count. It is not deleted on the last release, so that a test can read
/// the count afterwards.
class CountedObject : public virtual YBase::ReferenceCounted {
 public:
  CountedObject() = default;
  ~CountedObject() override = default;

  void AddRef() const override { ++mCount; }
  void Release() const override {
    --mCount;
    if (mCount == 0 && mOnLastRelease) mOnLastRelease();
  }

  int GetCount() const { return mCount; }
  void SetOnLastRelease(std::function<void()> action) { mOnLastRelease = std::move(action); }

 private:
  mutable int mCount = 0;
  std::function<void()> mOnLastRelease;
};

class DerivedObject : public CountedObject {};

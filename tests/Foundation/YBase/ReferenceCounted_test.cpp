#include <YBase/ReferenceCounted.h>

#include <type_traits>

// Only the object itself can delete it, and it cannot be copied or assigned.
static_assert(!std::is_destructible_v<YBase::ReferenceCounted>);
static_assert(std::has_virtual_destructor_v<YBase::ReferenceCounted>);
static_assert(!std::is_copy_constructible_v<YBase::ReferenceCounted>);
static_assert(!std::is_copy_assignable_v<YBase::ReferenceCounted>);

namespace {

class Interface : public virtual YBase::ReferenceCounted {
 protected:
  ~Interface() override = default;
};

class Object final : public Interface {
 public:
  explicit Object(bool& gone) : mGone(gone) {}
  void AddRef() const override { ++mCount; }
  void Release() const override {
    if (--mCount == 0) delete this;
  }

 private:
  ~Object() override { mGone = true; }

  bool& mGone;
  mutable int mCount = 0;
};

static_assert(!std::is_destructible_v<Interface> && !std::is_destructible_v<Object>);

TEST(ReferenceCounted, DestroysTheWholeObjectWhenReleasedThroughItsBase) {
  bool gone = false;
  const YBase::ReferenceCounted* object = new Object(gone);
  object->AddRef();
  object->AddRef();
  object->Release();
  EXPECT_FALSE(gone);
  object->Release();
  EXPECT_TRUE(gone);
}

}  // namespace

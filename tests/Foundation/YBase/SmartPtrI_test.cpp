#include <YBase/SmartPtrI.h>

#include <type_traits>
#include <utility>

#include "CountedObject.h"

namespace {

using Pointer = YBase::SmartPtrI<CountedObject>;
using DerivedPointer = YBase::SmartPtrI<DerivedObject>;

// A plain pointer is converted to a counted one only explicitly, and the reverse only by Get().
static_assert(!std::is_convertible_v<CountedObject*, Pointer>);
static_assert(std::is_constructible_v<Pointer, CountedObject*>);
static_assert(std::is_convertible_v<std::nullptr_t, Pointer>);
static_assert(!std::is_convertible_v<Pointer, CountedObject*>);
static_assert(!std::is_convertible_v<Pointer, bool>);
static_assert(std::is_convertible_v<DerivedPointer, Pointer>);
static_assert(!std::is_constructible_v<DerivedPointer, Pointer>);
static_assert(!std::is_constructible_v<Pointer, YBase::SmartPtrI<const CountedObject>>);
static_assert(std::is_convertible_v<Pointer, YBase::SmartPtrI<const CountedObject>>);
static_assert(std::is_nothrow_move_constructible_v<Pointer>);

TEST(SmartPtrI, IsNullByDefault) {
  const Pointer pointer;
  EXPECT_EQ(pointer.Get(), nullptr);
  EXPECT_FALSE(pointer);
  EXPECT_EQ(pointer, nullptr);
}

TEST(SmartPtrI, AddsAReferenceAndReleasesItOnDestruction) {
  CountedObject object;
  {
    const Pointer pointer(&object);
    EXPECT_EQ(object.GetCount(), 1);
    EXPECT_TRUE(pointer);
    EXPECT_EQ(pointer.Get(), &object);
    EXPECT_EQ(&*pointer, &object);
    EXPECT_EQ(pointer->GetCount(), 1);
  }
  EXPECT_EQ(object.GetCount(), 0);
}

TEST(SmartPtrI, AdoptsAReferenceWithoutAddingOne) {
  CountedObject object;
  object.AddRef();
  {
    const Pointer pointer = Pointer::Adopt(&object);
    EXPECT_EQ(pointer.Get(), &object);
    EXPECT_EQ(object.GetCount(), 1);
  }
  EXPECT_EQ(object.GetCount(), 0);
  EXPECT_FALSE(Pointer::Adopt(nullptr));
}

TEST(SmartPtrI, SharesOnCopyAndHandsOverOnMove) {
  CountedObject object;
  Pointer first(&object);
  const Pointer second(first);
  EXPECT_EQ(object.GetCount(), 2);
  const Pointer third(std::move(first));
  EXPECT_EQ(object.GetCount(), 2);
  EXPECT_EQ(first, nullptr);  // NOLINT(bugprone-use-after-move): null is guaranteed.
  EXPECT_EQ(second, third);
}

TEST(SmartPtrI, ConvertsToAPointerToABase) {
  DerivedObject object;
  DerivedPointer derived(&object);
  const Pointer copy = derived;
  EXPECT_EQ(object.GetCount(), 2);
  const Pointer moved = std::move(derived);
  EXPECT_EQ(object.GetCount(), 2);
  EXPECT_EQ(derived, nullptr);  // NOLINT(bugprone-use-after-move): null is guaranteed.
  EXPECT_EQ(copy, moved);
  EXPECT_EQ(moved, &object);
}

TEST(SmartPtrI, AssignmentReleasesTheOldObject) {
  CountedObject old;
  DerivedObject replacement;
  Pointer pointer(&old);
  pointer = DerivedPointer(&replacement);
  EXPECT_EQ(old.GetCount(), 0);
  EXPECT_EQ(replacement.GetCount(), 1);
  pointer = nullptr;
  EXPECT_EQ(replacement.GetCount(), 0);
}

TEST(SmartPtrI, SurvivesAssignmentToItself) {
  CountedObject object;
  int timesGone = 0;
  object.SetOnLastRelease([&] { ++timesGone; });
  Pointer pointer(&object);
  Pointer& itself = pointer;
  pointer = itself;
  EXPECT_EQ(object.GetCount(), 1);
  pointer = std::move(itself);
  EXPECT_EQ(pointer, &object);
  EXPECT_EQ(object.GetCount(), 1);
  EXPECT_EQ(timesGone, 0);
}

TEST(SmartPtrI, ShowsTheNewObjectBeforeTheOldOneIsReleased) {
  CountedObject old;
  CountedObject replacement;
  Pointer pointer(&old);
  const CountedObject* seen = nullptr;
  old.SetOnLastRelease([&] { seen = pointer.Get(); });
  pointer = Pointer(&replacement);
  EXPECT_EQ(seen, &replacement);
}

TEST(SmartPtrI, ComparesWithPlainPointers) {
  CountedObject object;
  CountedObject other;
  const Pointer pointer(&object);
  EXPECT_TRUE(pointer == &object);
  EXPECT_TRUE(&object == pointer);
  EXPECT_TRUE(pointer != &other);
  EXPECT_TRUE(pointer != Pointer(&other));
  EXPECT_TRUE(pointer != nullptr);
}

}  // namespace

#include <YDataType/ObjectCollection.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace {

class Item final : public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit Item(int& alive) : mAlive(alive) { ++mAlive; }

 private:
  ~Item() override { --mAlive; }

  int& mAlive;
};

using Collection = YDataType::ObjectCollection<Item>;
using ItemPtr = YBase::SmartPtrI<Item>;

TEST(ObjectCollection, KeepsTheOrderInWhichObjectsWereAdded) {
  int alive = 0;
  const ItemPtr first(new Item(alive));
  const ItemPtr second(new Item(alive));
  Collection collection;
  EXPECT_EQ(collection.GetCount(), 0u);
  collection.Add(second);
  collection.Add(first);
  collection.Add(second);
  ASSERT_EQ(collection.GetCount(), 3u);
  EXPECT_EQ(collection.GetItem(0), second);
  EXPECT_EQ(collection.GetItem(1), first);
  EXPECT_EQ(collection.GetItem(2), second);
}

TEST(ObjectCollection, HoldsAReferenceToEachObject) {
  int alive = 0;
  {
    Collection collection;
    collection.Add(ItemPtr(new Item(alive)));
    const Collection copy(collection);
    collection = Collection();
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(copy.GetCount(), 1u);
  }
  EXPECT_EQ(alive, 0);
}

TEST(ObjectCollection, KeepsNullLikeAnyOtherEntry) {
  Collection collection;
  collection.Add(nullptr);
  ASSERT_EQ(collection.GetCount(), 1u);
  EXPECT_EQ(collection.GetItem(0), nullptr);
}

TEST(ObjectCollection, RefusesAnIndexBeyondItsEndInDebugBuilds) {
  const Collection collection;
  EXPECT_DEBUG_DEATH(EXPECT_EQ(collection.GetItem(0), nullptr), "index");
}

}  // namespace

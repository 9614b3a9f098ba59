#include "Destinations/CallstackMessageIDs.h"

#include <atomic>
#include <iterator>
#include <thread>

namespace {

using YLog::CallstackMessageIDs;

constexpr unsigned SOME[] = {300, 5, 300};

TEST(CallstackMessageIDs, AreNoneAtFirst) {
  EXPECT_FALSE(CallstackMessageIDs().Contains(300));
}

TEST(CallstackMessageIDs, AreThoseThatWereSet) {
  CallstackMessageIDs ids;
  ids.Set(SOME, std::size(SOME));
  EXPECT_TRUE(ids.Contains(5));
  EXPECT_TRUE(ids.Contains(300));
  EXPECT_FALSE(ids.Contains(6));
}

TEST(CallstackMessageIDs, AreReplacedByTheNextOnesSet) {
  CallstackMessageIDs ids;
  ids.Set(SOME, std::size(SOME));
  ids.Set(SOME, 1);
  EXPECT_TRUE(ids.Contains(300));
  EXPECT_FALSE(ids.Contains(5));
  ids.Set(nullptr, 0);
  EXPECT_FALSE(ids.Contains(300));
}

TEST(CallstackMessageIDs, NeverContainZero) {
  CallstackMessageIDs ids;
  constexpr unsigned NONE = 0;
  ids.Set(&NONE, 1);
  EXPECT_FALSE(ids.Contains(0));
}

TEST(CallstackMessageIDs, RefuseNullWithANonzeroCount) {
  CallstackMessageIDs ids;
  EXPECT_DEBUG_DEATH(ids.Set(nullptr, 1), "ids != nullptr");
}

TEST(CallstackMessageIDs, MayBeSetWhileOthersReadThem) {
  CallstackMessageIDs ids;
  std::atomic<bool> stop{false};
  std::jthread asking([&] {
    while (!stop) EXPECT_FALSE(ids.Contains(6));
  });
  for (unsigned count = 0; count < 1000; ++count) ids.Set(SOME, count % 4);
  stop = true;
  asking.join();
  EXPECT_TRUE(ids.Contains(300));
}

}  // namespace

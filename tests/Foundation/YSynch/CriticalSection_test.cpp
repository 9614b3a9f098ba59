#include <YSynch/CriticalSection.h>

#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

using YSynch::CriticalSection;

// Excluded from the compiler's analysis, which does not support recursive locks.
void Lock(CriticalSection& section) YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  section.Lock();
}
void Unlock(CriticalSection& section) YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  section.Unlock();
}
bool TryLock(CriticalSection& section) YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  return section.TryLock();
}

bool IsFreeForOthers(CriticalSection& section) {
  bool free = false;
  std::thread([&] {
    free = TryLock(section);
    if (free) Unlock(section);
  }).join();
  return free;
}

TEST(CriticalSection, IsFreeOnceItIsUnlockedAsOftenAsLocked) {
  CriticalSection section(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  EXPECT_TRUE(IsFreeForOthers(section));
  Lock(section);
  Lock(section);
  ASSERT_TRUE(TryLock(section));
  Unlock(section);
  Unlock(section);
  EXPECT_FALSE(IsFreeForOthers(section));
  Unlock(section);
  EXPECT_TRUE(IsFreeForOthers(section));
}

TEST(CriticalSection, ExcludesOtherThreads) {
  CriticalSection section(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  long count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i != 4; ++i) {
    threads.emplace_back([&] {
      for (int k = 0; k != 10'000; ++k) {
        const CriticalSection::SmartLock lock(section);
        ++count;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count, 40'000);
}

TEST(CriticalSection, SmartLockHoldsItUntilTheEndOfTheScope) {
  CriticalSection section(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  {
    const CriticalSection::SmartLock lock(section);
    EXPECT_FALSE(IsFreeForOthers(section));
  }
  EXPECT_TRUE(IsFreeForOthers(section));
}

TEST(CriticalSectionDeathTest, RefusesToBeUnlockedByAThreadThatDoesNotHoldIt) {
  CriticalSection section(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  EXPECT_DEBUG_DEATH(Unlock(section), "does not hold it");
  EXPECT_TRUE(IsFreeForOthers(section));
}

}  // namespace

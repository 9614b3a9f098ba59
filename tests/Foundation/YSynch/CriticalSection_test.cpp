#include <YSynch/CriticalSection.h>

#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

using YSynch::CriticalSection;

// Beyond what the compiler's analysis follows: it knows no lock that is taken twice.
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

TEST(CriticalSection, IsFreeWhenItWasGivenBackAsOftenAsTaken) {
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

TEST(CriticalSection, KeepsThreadsApart) {
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

TEST(CriticalSection, SmartLockHoldsItToTheEndOfTheScope) {
  CriticalSection section(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  {
    const CriticalSection::SmartLock lock(section);
    EXPECT_FALSE(IsFreeForOthers(section));
  }
  EXPECT_TRUE(IsFreeForOthers(section));
}

TEST(CriticalSectionDeathTest, RefusesToBeGivenBackByAThreadThatDoesNotHoldIt) {
  CriticalSection section(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  EXPECT_DEBUG_DEATH(Unlock(section), "does not hold it");
  EXPECT_TRUE(IsFreeForOthers(section));
}

}  // namespace

#include <YSynch/RWLock.h>

#include <atomic>
#include <latch>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/WaitingThread.h"

namespace {

using YSynch::RWLock;

TEST(RWLock, CanBeHeldByReadersTogether) {
  RWLock lock(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  std::latch inside(3);
  const auto read = [&] {
    const RWLock::ReadSmartLock guard(lock);
    inside.arrive_and_wait();  // Returns only if all three are inside at once.
  };
  std::thread second(read);
  std::thread third(read);
  read();
  second.join();
  third.join();
}

TEST(RWLock, IsHeldByAWriterAlone) {
  RWLock lock(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  long first = 0;
  long second = 0;
  std::atomic<int> torn = 0;
  const auto write = [&] {
    for (int i = 0; i != 5'000; ++i) {
      const RWLock::WriteSmartLock guard(lock);
      ++first;
      ++second;
    }
  };
  const auto read = [&] {
    for (int i = 0; i != 5'000; ++i) {
      const RWLock::ReadSmartLock guard(lock);
      if (first != second) ++torn;
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i != 2; ++i) {
    threads.emplace_back(write);
    threads.emplace_back(read);
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(torn, 0);
  EXPECT_EQ(first, 10'000);
  EXPECT_EQ(second, 10'000);
}

/// A thread that takes a lock, and can report whether it is waiting for it.
template <class Guard>
class Taker {
 public:
  template <class Inside>
  Taker(RWLock& lock, Inside inside)
      : mLock(lock), mThread([this, inside] {
          mID = Support::ThreadID();
          const Guard guard(mLock);
          mbInside = true;
          inside();
        }) {}
  ~Taker() { mThread.join(); }

  void AwaitWaitingOrInside() const {
    while (!mbInside && !Support::IsWaitingOn(mID, &mLock, sizeof(RWLock))) std::this_thread::yield();
  }
  bool IsInside() const { return mbInside; }

 private:
  RWLock& mLock;
  std::atomic<pid_t> mID = 0;
  std::atomic<bool> mbInside = false;
  std::thread mThread;
};

TEST(RWLock, PrefersAWaitingWriterToLaterReaders) {
  RWLock lock(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  bool written = false;
  bool lateReaderSawIt = false;
  {
    std::optional<Taker<RWLock::WriteSmartLock>> writer;
    std::optional<Taker<RWLock::ReadSmartLock>> lateReader;
    const RWLock::ReadSmartLock guard(lock);
    writer.emplace(lock, [&] { written = true; });
    writer->AwaitWaitingOrInside();
    EXPECT_FALSE(writer->IsInside());
    lateReader.emplace(lock, [&] { lateReaderSawIt = written; });
    lateReader->AwaitWaitingOrInside();
    EXPECT_FALSE(lateReader->IsInside());
  }
  EXPECT_TRUE(lateReaderSawIt);
}

}  // namespace

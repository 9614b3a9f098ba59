#include <unistd.h>

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include <YBase/CallStack.h>
#include <YSynch/CriticalSection.h>

#include "NewProcess.h"
#include "support/BusyThreads.h"
#include "support/ChildProcess.h"

namespace {

using Support::BusyThreads;
using Support::ChildProcess;

bool TakesStack() {
  return YBase::CreateCallStack().GetFrameCount() > 6;
}

/// Whether a forked child can take a stack. If it hangs, it is killed after a minute.
bool TakesStackInChild() {
  return ChildProcess([] {
           alarm(60);
           return TakesStack() ? 0 : 1;
         }).Wait() == 0;
}

TEST(CallStackFork, ChildTakesAStackThoughForkedWhileOtherThreadsTakeTheFirst) {
  RunInNewProcess([] {
    constexpr auto work = [] {
      std::atomic<bool> isRunning = false;
      std::thread other([&] {
        isRunning = true;
        TakesStack();
      });
      while (!isRunning) std::this_thread::yield();
      const bool succeeds = TakesStackInChild();
      other.join();
      return succeeds ? 0 : 1;
    };
    // Each round is a process in which no stack has been taken yet.
    for (int round = 0; round != 10; ++round) ASSERT_EQ(ChildProcess(work).Wait(), 0);
  });
}

TEST(CallStackFork, ChildTakesAStackThoughForkedDuringLookups) {
  const BusyThreads others(3, TakesStack);
  for (int round = 0; round != 300; ++round) ASSERT_TRUE(TakesStackInChild());
}

TEST(CallStackFork, ForkDoesNotDeadlockWithAThreadThatTakesStacksUnderALock) {
  YSynch::CriticalSection section(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const BusyThreads others(2, [&section] {
    const YSynch::CriticalSection::SmartLock lock(section);
    TakesStack();
  });
  alarm(100);
  for (int round = 0; round != 200; ++round) ASSERT_TRUE(TakesStackInChild());
  alarm(0);
}

}  // namespace

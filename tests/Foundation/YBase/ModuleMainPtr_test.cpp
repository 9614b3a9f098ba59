#include <YBase/ModuleMainPtr.h>

#include <sys/syscall.h>
#include <sys/types.h>

#include <atomic>
#include <barrier>
#include <functional>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "support/CancelledThread.h"
#include "support/WaitUntil.h"
#include "support/WaitingThread.h"

namespace {

class Service {
 public:
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;
  virtual int GetNumber() const = 0;

 protected:
  Service() = default;
  ~Service() = default;
};

std::atomic<int> gsBuilt{0};
// Started and not stopped yet.
std::atomic<int> gsAlive{0};
bool gsFailing = false;
// Called by the next object that is stopped or destroyed, respectively.
std::function<void()> gsOnStop;
std::function<void()> gsOnDestruction;

class Service_Impl final : public Service {
 public:
  Service_Impl() : mNumber(++gsBuilt) {
    if (gsFailing) throw std::runtime_error("cannot start");
    ++gsAlive;
  }
  ~Service_Impl();
  void Stop() noexcept {
    if (gsOnStop) std::exchange(gsOnStop, nullptr)();
    --gsAlive;
  }
  Service_Impl(const Service_Impl&) = delete;
  Service_Impl& operator=(const Service_Impl&) = delete;

  int GetNumber() const override { return mNumber; }

 private:
  const int mNumber;
};

constinit YBase::ModuleMainPtr<Service, Service_Impl> gsServicePtr;

Service_Impl::~Service_Impl() {
  if (gsOnDestruction) std::exchange(gsOnDestruction, nullptr)();
}

/// Blocks start and stop as long as it exists.
class HeldWord {
 public:
  HeldWord() { gsServicePtr.LockForFork(); }
  ~HeldWord() { gsServicePtr.UnlockAfterFork(); }
  HeldWord(const HeldWord&) = delete;
  HeldWord& operator=(const HeldWord&) = delete;
};

class ModuleMainPtr : public testing::Test {
 protected:
  ModuleMainPtr() {
    gsBuilt = 0;
    gsOnStop = nullptr;
    gsOnDestruction = nullptr;
  }
};

TEST_F(ModuleMainPtr, IsNullUntilTheFirstStart) {
  EXPECT_EQ(gsServicePtr.Get(), nullptr);
  gsServicePtr.Initialize();
  EXPECT_NE(gsServicePtr.Get(), nullptr);
  gsServicePtr.Finalize();
  EXPECT_EQ(gsServicePtr.Get(), nullptr);
}

TEST_F(ModuleMainPtr, KeepsTheObjectUntilTheLastUserStops) {
  gsServicePtr.Initialize();
  const Service* const first = gsServicePtr.Get();
  gsServicePtr.Initialize();
  EXPECT_EQ(gsServicePtr.Get(), first);
  EXPECT_EQ(gsBuilt, 1);
  gsServicePtr.Finalize();
  EXPECT_EQ(gsServicePtr->GetNumber(), 1);
  gsServicePtr.Finalize();
  EXPECT_EQ(gsAlive, 0);
}

TEST_F(ModuleMainPtr, BuildsANewObjectAfterAStop) {
  gsServicePtr.Initialize();
  gsServicePtr.Finalize();
  gsServicePtr.Initialize();
  EXPECT_EQ(gsServicePtr->GetNumber(), 2);
  gsServicePtr.Finalize();
}

TEST_F(ModuleMainPtr, DoesNotCountAStartWhoseConstructorThrows) {
  gsFailing = true;
  EXPECT_THROW(gsServicePtr.Initialize(), std::runtime_error);
  EXPECT_EQ(gsServicePtr.Get(), nullptr);
  gsFailing = false;
  gsServicePtr.Initialize();
  EXPECT_EQ(gsServicePtr->GetNumber(), 2);
  gsServicePtr.Finalize();
  EXPECT_EQ(gsServicePtr.Get(), nullptr);
}

TEST_F(ModuleMainPtr, ThrowsOnUseWhileStopped) {
  try {
    gsServicePtr->GetNumber();
    FAIL() << "used while stopped";
  } catch (const YBase::ExceptionImpl<YBase::Message>& exception) {
    EXPECT_STREQ(exception.what(), "YBase::ModuleMainPtr::operator->: no Initializer is alive");
  }
}

TEST_F(ModuleMainPtr, IsAlreadyNullWhileTheObjectIsDestroyed) {
  std::optional<Service*> seen;
  gsOnDestruction = [&] { seen = gsServicePtr.Get(); };
  gsServicePtr.Initialize();
  gsServicePtr.Finalize();
  EXPECT_EQ(seen, nullptr);
}

TEST_F(ModuleMainPtr, CanBeStartedAndStoppedWhileAnObjectIsDestroyed) {
  int number = 0;
  gsOnDestruction = [&] {
    EXPECT_EQ(gsAlive, 0) << "the old one is stopped first";
    gsServicePtr.Initialize();
    number = gsServicePtr->GetNumber();
    gsServicePtr.Finalize();
  };
  gsServicePtr.Initialize();
  gsServicePtr.Finalize();
  EXPECT_EQ(number, 2);
  EXPECT_EQ(gsAlive, 0);
}

TEST_F(ModuleMainPtr, KeepsAnObjectStartedWhileThePreviousOneWasDestroyed) {
  gsOnDestruction = [] { gsServicePtr.Initialize(); };
  gsServicePtr.Initialize();
  gsServicePtr.Finalize();
  EXPECT_EQ(gsServicePtr->GetNumber(), 2);
  gsServicePtr.Finalize();
  EXPECT_EQ(gsServicePtr.Get(), nullptr);
}

TEST_F(ModuleMainPtr, DelaysAStartInAnotherThreadWhileAnObjectIsStopped) {
  std::atomic<pid_t> starterID{0};
  std::jthread starter;
  gsOnStop = [&] {
    starter = std::jthread([&] {
      starterID = Support::ThreadID();
      gsServicePtr.Initialize();
    });
    // A thread that waits for the lock word sleeps repeatedly, for zero time.
    EXPECT_TRUE(Support::WaitUntil(
        [&] { return gsBuilt == 2 || Support::IsWaitingInSystemCall(starterID, SYS_clock_nanosleep); }));
    EXPECT_EQ(gsBuilt, 1);
  };
  gsServicePtr.Initialize();
  gsServicePtr.Finalize();
  starter.join();
  EXPECT_EQ(gsServicePtr->GetNumber(), 2);
  gsServicePtr.Finalize();
}

TEST_F(ModuleMainPtr, CanBeLockedForAForkWhileAnObjectIsDestroyed) {
  bool locked = false;
  gsOnDestruction = [&] {
    gsServicePtr.LockForFork();
    locked = true;
    gsServicePtr.UnlockAfterFork();
  };
  gsServicePtr.Initialize();
  gsServicePtr.Finalize();
  EXPECT_TRUE(locked);
}

TEST_F(ModuleMainPtr, StartsInACancelledThreadThatHasToWait) {
  std::optional<HeldWord> word(std::in_place);
  std::atomic<bool> begins{false};
  bool finished = false;
  std::thread thread([&] {
    finished = Support::FinishesBeforeItIsCancelled([&] {
      begins = true;
      gsServicePtr.Initialize();
    });
  });
  while (!begins) std::this_thread::yield();
  // Gives the thread time to start waiting. If it does not, the test merely covers less.
  for (int i = 0; i != 1'000; ++i) std::this_thread::yield();
  word.reset();
  thread.join();
  EXPECT_TRUE(finished);
  gsServicePtr.Finalize();
}

TEST_F(ModuleMainPtr, RefusesAnExcessStopInDebugBuilds) {
  EXPECT_DEBUG_DEATH(gsServicePtr.Finalize(), "mUserCount");
  gsServicePtr.Initialize();
  EXPECT_EQ(gsServicePtr->GetNumber(), 1);
  gsServicePtr.Finalize();
}

TEST_F(ModuleMainPtr, BuildsOneObjectForConcurrentStarts) {
  constexpr int THREADS = 8;
  constexpr int ROUNDS = 200;
  std::barrier gate(THREADS);
  std::atomic<int> several{0};
  const auto startAndStop = [&] {
    for (int round = 0; round < ROUNDS; ++round) {
      gate.arrive_and_wait();
      gsServicePtr.Initialize();
      if (gsAlive != 1 || gsServicePtr->GetNumber() < 1) ++several;
      gsServicePtr.Finalize();
    }
  };
  std::vector<std::jthread> threads;
  for (int i = 0; i < THREADS; ++i) threads.emplace_back(startAndStop);
  threads.clear();
  EXPECT_EQ(several, 0);
  EXPECT_EQ(gsAlive, 0);
  EXPECT_GE(gsBuilt, ROUNDS);
}

}  // namespace

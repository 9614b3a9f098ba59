#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <latch>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YBase/NeverDestroyed.h>
#include <YSynch/CriticalSection.h>
#include <YSynch/ForkParticipant.h>
#include <YSynch/RWLock.h>

#include "support/BusyThreads.h"
#include "support/CancelledThread.h"
#include "support/ForkedThread.h"
#include "support/WaitingThread.h"

namespace {

using Support::BusyThreads;
using Support::FinishesBeforeItIsCancelled;
using Support::IsWaitingInSystemCall;
using Support::IsWaitingOn;
using Support::SucceededChild;
using Support::SucceedsInChild;
using Support::ThreadID;
using testing::ElementsAre;
using YSynch::CriticalSection;
using YSynch::RWLock;

// Excluded from the compiler's analysis, which cannot follow it.
void Lock(CriticalSection& section) YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  section.Lock();
}
void Unlock(CriticalSection& section) YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  section.Unlock();
}
bool IsFreeForOthers(CriticalSection& section) YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  bool free = false;
  std::thread([&]() YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
    free = section.TryLock();
    if (free) section.Unlock();
  }).join();
  return free;
}

/// Two numbers that are equal whenever their lock is free.
template <class Lockable, class Guard>
class Pair {
 public:
  void Change() {
    const Guard guard(mLock);
    ++mFirst;
    ++mSecond;
  }
  bool IsWhole() {
    const Guard guard(mLock);
    return mFirst == mSecond;
  }

 private:
  Lockable mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  unsigned mFirst YSYNCH_GUARDED_BY(mLock) = 0;
  unsigned mSecond YSYNCH_GUARDED_BY(mLock) = 0;
};

/// A thread that stays alive after its work until it is joined. In a child, the thread sanitizer reports a
/// thread that ended before the fork as leaked.
class Companion {
 public:
  template <class Work>
  explicit Companion(Work work)
      : mThread([this, work] {
          work();
          mMayEnd.wait();
        }) {}
  ~Companion() {
    mMayEnd.count_down();
    mThread.join();
  }

 private:
  std::latch mMayEnd{1};
  std::thread mThread;
};

class Fork : public testing::Test {
 protected:
  void Change() {
    for (auto& pair : mSections) pair.Change();
    for (auto& pair : mRWLocks) pair.Change();
  }
  bool AreWhole() {
    bool whole = true;
    for (auto& pair : mSections) whole = pair.IsWhole() && whole;
    for (auto& pair : mRWLocks) whole = pair.IsWhole() && whole;
    return whole;
  }

  std::vector<Pair<CriticalSection, CriticalSection::SmartLock>> mSections{8};
  std::vector<Pair<RWLock, RWLock::WriteSmartLock>> mRWLocks{8};
};

TEST_F(Fork, ChildTakesEveryLockAndFindsNothingHalfChanged) {
  const BusyThreads others(4, [this] { Change(); });
  for (int i = 0; i != 20; ++i) {
    ASSERT_TRUE(SucceedsInChild([this] { return AreWhole(); }));
  }
  EXPECT_TRUE(AreWhole());
}

TEST_F(Fork, ChildOfAChildTakesEveryLock) {
  const BusyThreads others(2, [this] { Change(); });
  EXPECT_TRUE(SucceedsInChild([this] {
    const BusyThreads more(2, [this] { Change(); });
    return SucceedsInChild([this] { return AreWhole(); }) && AreWhole();
  }));
}

TEST_F(Fork, ThreadsCanForkAtTheSameTime) {
  std::atomic<int> failures = 0;
  {
    const BusyThreads others(2, [this] { Change(); });
    std::latch begun(3);
    const auto fork = [&] {
      begun.arrive_and_wait();
      for (int i = 0; i != 10; ++i) failures += SucceedsInChild([this] { return AreWhole(); }) ? 0 : 1;
    };
    const Companion second(fork);
    const Companion third(fork);
    fork();
  }
  EXPECT_EQ(failures, 0);
}

TEST_F(Fork, WaitsForReadersAndDropsThemInTheChild) {
  RWLock lock(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const BusyThreads readers(4, [&] { const RWLock::ReadSmartLock guard(lock); });
  for (int i = 0; i != 20; ++i) {
    ASSERT_TRUE(SucceedsInChild([&] {
      { const RWLock::WriteSmartLock guard(lock); }
      { const RWLock::ReadSmartLock guard(lock); }
      const RWLock::WriteSmartLock guard(lock);
      return true;
    }));
  }
}

constinit YBase::NeverDestroyed<CriticalSection> gsStaticSection(YSynch::LOCK_STACK_CATEGORY_CLASS);
constinit bool gsbTakenBeforeStaticObjects = false;

[[gnu::constructor(103)]] void TakeBeforeStaticObjects() {
  const CriticalSection::SmartLock lock(*gsStaticSection);
  gsbTakenBeforeStaticObjects = true;
}

TEST_F(Fork, ChildTakesALockCreatedBeforeStaticObjects) {
  EXPECT_TRUE(gsbTakenBeforeStaticObjects);
  const BusyThreads others(2, [] { const CriticalSection::SmartLock lock(*gsStaticSection); });
  for (int i = 0; i != 50; ++i) {
    ASSERT_TRUE(SucceedsInChild([] {
      const CriticalSection::SmartLock lock(*gsStaticSection);
      return true;
    }));
  }
}

TEST_F(Fork, ChildKeepsACriticalSectionHeldByTheForkingThread) {
  CriticalSection section(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  Lock(section);
  Lock(section);
  const pid_t child = fork();
  bool right = !IsFreeForOthers(section);
  Unlock(section);
  right = !IsFreeForOthers(section) && right;
  Unlock(section);
  right = IsFreeForOthers(section) && right;
  if (child == 0) _exit(right ? 0 : 1);
  EXPECT_TRUE(right);
  EXPECT_TRUE(SucceededChild(child));
}

enum class Call { BEFORE, IN_PARENT, IN_CHILD };

class Participant final : public YSynch::ForkParticipant {
 public:
  using Action = std::function<void(Call)>;

  explicit Participant(Action action = {}) : mAction(std::move(action)) { Join(); }
  ~Participant() override { Leave(); }

  const std::vector<Call>& Calls() const { return mCalls; }

 private:
  void BeforeFork() noexcept override { Note(Call::BEFORE); }
  void AfterForkInParent() noexcept override { Note(Call::IN_PARENT); }
  void AfterForkInChild() noexcept override { Note(Call::IN_CHILD); }

  void Note(Call call) {
    mCalls.push_back(call);
    if (mAction) mAction(call);
  }

  std::vector<Call> mCalls;
  const Action mAction;
};

TEST_F(Fork, ParticipantIsCalledBeforeAndAfterInBothProcesses) {
  const Participant participant;
  EXPECT_TRUE(SucceedsInChild([&] {
    return participant.Calls() == std::vector<Call>{Call::BEFORE, Call::IN_CHILD};
  }));
  EXPECT_TRUE(SucceedsInChild([] { return true; }));
  EXPECT_THAT(participant.Calls(), ElementsAre(Call::BEFORE, Call::IN_PARENT, Call::BEFORE, Call::IN_PARENT));
}

TEST_F(Fork, ParticipantThatHasLeftIsNotCalled) {
  const Participant first;
  auto second = std::make_unique<Participant>([](Call) { FAIL(); });
  const Participant third;
  second.reset();
  EXPECT_TRUE(SucceedsInChild([] { return true; }));
  EXPECT_THAT(first.Calls(), ElementsAre(Call::BEFORE, Call::IN_PARENT));
  EXPECT_THAT(third.Calls(), ElementsAre(Call::BEFORE, Call::IN_PARENT));
}

TEST_F(Fork, LocksAreFreeBeforeItAndHeldUntilAllParticipantsWereCalled) {
  CriticalSection section(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  std::vector<std::pair<Call, bool>> free;
  const Participant participant([&](Call call) { free.emplace_back(call, IsFreeForOthers(section)); });
  const std::vector<std::pair<Call, bool>> inChild{{Call::BEFORE, true}, {Call::IN_CHILD, false}};
  EXPECT_TRUE(SucceedsInChild([&] { return free == inChild; }));
  EXPECT_THAT(free, ElementsAre(std::pair(Call::BEFORE, true), std::pair(Call::IN_PARENT, false)));
}

TEST_F(Fork, ParticipantThatJoinsDuringTheWaitForALockIsCalledBeforeTheFork) {
  CriticalSection section(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  std::latch locked(1);
  std::optional<Participant> late;
  const Companion holder([&, forkingThread = ThreadID()] {
    const CriticalSection::SmartLock lock(section);
    locked.count_down();
    while (!IsWaitingOn(forkingThread, &section, sizeof(section))) std::this_thread::yield();
    late.emplace();
  });
  locked.wait();
  EXPECT_TRUE(SucceedsInChild([&] {
    return late->Calls() == std::vector<Call>{Call::BEFORE, Call::IN_CHILD};
  }));
  EXPECT_THAT(late->Calls(), ElementsAre(Call::BEFORE, Call::IN_PARENT));
}

TEST_F(Fork, LockIsNotDestroyedWhileAForkWaitsForIt) {
  for (int i = 0; i != 50; ++i) {
    auto doomed = std::make_unique<CriticalSection>(YSynch::LOCK_STACK_CATEGORY_OBJECT);
    std::latch locked(1);
    const Companion holder([&, forkingThread = ThreadID()] {
      {
        const CriticalSection::SmartLock lock(*doomed);
        locked.count_down();
        while (!IsWaitingOn(forkingThread, doomed.get(), sizeof(*doomed))) std::this_thread::yield();
      }
      doomed.reset();
    });
    locked.wait();
    EXPECT_TRUE(SucceedsInChild([] { return true; }));
  }
}

TEST_F(Fork, IsNotBlockedByACancelledThread) {
  CriticalSection awaited(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  CriticalSection other(YSynch::LOCK_STACK_CATEGORY_OBJECT);
  std::latch locked(1);
  bool finished = false;
  const Companion holder([&, forkingThread = ThreadID()] {
    const CriticalSection::SmartLock lock(awaited);
    locked.count_down();
    while (!IsWaitingOn(forkingThread, &awaited, sizeof(awaited))) std::this_thread::yield();
    finished = FinishesBeforeItIsCancelled([&] { const CriticalSection::SmartLock second(other); });
  });
  locked.wait();
  EXPECT_TRUE(SucceedsInChild([] { return true; }));
  EXPECT_TRUE(finished);
}

TEST_F(Fork, ParticipantCanBeDestroyedByACancelledThread) {
  std::latch begun(1);
  std::atomic<pid_t> destroying = 0;
  auto participant = std::make_unique<Participant>([&](Call call) {
    if (call != Call::BEFORE) return;
    begun.count_down();
    while (!IsWaitingInSystemCall(destroying, SYS_futex)) std::this_thread::yield();
  });
  bool finished = false;
  {
    const Companion destroyer([&] {
      begun.wait();
      finished = FinishesBeforeItIsCancelled([&] {
        destroying = ThreadID();
        participant.reset();
      });
    });
    EXPECT_TRUE(SucceedsInChild([] { return true; }));
  }
  EXPECT_TRUE(finished);
}

TEST_F(Fork, ParticipantIsNotDestroyedDuringItsCall) {
  std::latch begun(1);
  std::atomic<bool> done = false;
  auto participant = std::make_unique<Participant>([&](Call call) {
    if (call != Call::BEFORE) return;
    begun.count_down();
    for (int i = 0; i != 1'000; ++i) std::this_thread::yield();
    done = true;
  });
  bool doneWhenDestroyed = false;
  {
    const Companion destroyer([&] {
      begun.wait();
      participant.reset();
      doneWhenDestroyed = done;
    });
    EXPECT_TRUE(SucceedsInChild([] { return true; }));
  }
  EXPECT_TRUE(doneWhenDestroyed);
}

}  // namespace

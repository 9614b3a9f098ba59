#include <optional>

#include <gtest/gtest.h>

#include <YSynch/CriticalSection.h>
#include <YSynch/ForkParticipant.h>
#include <YSynch/RWLock.h>

#include "support/BusyThreads.h"
#include "support/ForkedThread.h"

namespace {

using Support::BusyThreads;
using Support::SucceedsInChild;
using YSynch::CriticalSection;
using YSynch::RWLock;

constexpr auto OBJECT = YSynch::LOCK_STACK_CATEGORY_OBJECT;

class Participant final : public YSynch::ForkParticipant {
 public:
  explicit Participant(CriticalSection& section) : mSection(section) { Join(); }
  ~Participant() override { Leave(); }

 private:
  void BeforeFork() noexcept override { const CriticalSection::SmartLock lock(mSection); }

  CriticalSection& mSection;
};

/// Locks, and the ways of using them that a fork must cope with.
class Locks {
 public:
  void TakeInTheOrderOfTheirMaking() {
    const CriticalSection::SmartLock first(mA);
    const CriticalSection::SmartLock second(mB);
  }

  void TakeInTheOppositeOrder() {
    const CriticalSection::SmartLock first(mD);
    const CriticalSection::SmartLock second(mC);
  }

  void TakeBothKinds() {
    const RWLock::ReadSmartLock first(mReadOften);
    const CriticalSection::SmartLock second(mE);
    const RWLock::WriteSmartLock third(mWritten);
  }

  void MakeAndDestroyLocks() {
    const CriticalSection::SmartLock lock(mF);
    Use(mMadeSection.emplace(OBJECT), mMadeRWLock.emplace(OBJECT));
    mMadeSection.reset();
    mMadeRWLock.reset();
  }

  void MakeAndDestroyParticipants() {
    const CriticalSection::SmartLock lock(mG);
    mMadeParticipant.emplace(mH);
    mMadeParticipant.reset();
  }

  bool TakeAll() {
    for (int i = 0; i != 2; ++i) {
      TakeInTheOrderOfTheirMaking();
      TakeInTheOppositeOrder();
      TakeBothKinds();
      MakeAndDestroyLocks();
      MakeAndDestroyParticipants();
    }
    return true;
  }

 private:
  static void Use(CriticalSection& section, RWLock& rwLock) {
    const CriticalSection::SmartLock outer(section);
    const RWLock::ReadSmartLock inner(rwLock);
  }

  CriticalSection mA{OBJECT}, mB{OBJECT}, mC{OBJECT}, mD{OBJECT}, mE{OBJECT}, mF{OBJECT}, mG{OBJECT},
      mH{OBJECT};
  // Not on the heap, which does not cope well with forks under the address sanitizer.
  std::optional<CriticalSection> mMadeSection YSYNCH_GUARDED_BY(mF);
  std::optional<RWLock> mMadeRWLock YSYNCH_GUARDED_BY(mF);
  std::optional<Participant> mMadeParticipant YSYNCH_GUARDED_BY(mG);
  RWLock mReadOften{OBJECT}, mWritten{OBJECT};
};

TEST(ForkStress, NoUseOfLocksBlocksAForkOrLeavesALockTakenInTheChild) {
  Locks locks;
  BusyThreads threads;
  threads.Add(1, [&] { locks.TakeInTheOrderOfTheirMaking(); });
  threads.Add(1, [&] { locks.TakeInTheOppositeOrder(); });
  threads.Add(2, [&] { locks.TakeBothKinds(); });
  threads.Add(2, [&] { locks.MakeAndDestroyLocks(); });
  threads.Add(1, [&] { locks.MakeAndDestroyParticipants(); });
  for (int i = 0; i != 200; ++i) {
    ASSERT_TRUE(SucceedsInChild([&] { return locks.TakeAll(); })) << "child " << i;
  }
}

}  // namespace

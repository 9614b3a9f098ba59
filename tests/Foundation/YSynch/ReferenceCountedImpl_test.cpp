#include <YSynch/ReferenceCountedImpl.h>

#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YBase/SmartPtrI.h>

namespace {

using testing::ElementsAre;

enum class Event { HOOK, DEATH };
using Events = std::vector<Event>;

class Counted final : public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  using Hook = std::function<void(const Counted&)>;

  explicit Counted(Events& events, Hook hook = {}) : mEvents(events), mHook(std::move(hook)) {}
  ~Counted() override { mEvents.push_back(Event::DEATH); }

 private:
  void ReferenceCountIsAboutToReachZero() const override {
    mEvents.push_back(Event::HOOK);
    if (mHook) mHook(*this);
  }

  Events& mEvents;
  const Hook mHook;
};

TEST(ReferenceCountedImpl, LivesUntilItsLastReferenceIsReleased) {
  Events events;
  YBase::SmartPtrI<Counted> first(new Counted(events));
  YBase::SmartPtrI<Counted> second = first;
  first = nullptr;
  EXPECT_THAT(events, ElementsAre());
  second = nullptr;
  EXPECT_THAT(events, ElementsAre(Event::HOOK, Event::DEATH));
}

TEST(ReferenceCountedImpl, StartsAtZeroSoThatTheFirstReferenceMakesItOne) {
  Events events;
  auto* counted = new Counted(events);
  counted->AddRef();
  counted->AddRef();
  counted->Release();
  EXPECT_THAT(events, ElementsAre());
  counted->Release();
  EXPECT_THAT(events, ElementsAre(Event::HOOK, Event::DEATH));
}

TEST(ReferenceCountedImpl, LetsProxiesAddAReferenceWhileItIsHeld) {
  Events events;
  YBase::SmartPtrI<Counted> held(new Counted(events));
  EXPECT_TRUE(held->TryAddRef());
  Counted* plain = held.Get();
  held = nullptr;
  EXPECT_THAT(events, ElementsAre());
  plain->Release();
  EXPECT_THAT(events, ElementsAre(Event::HOOK, Event::DEATH));
}

TEST(ReferenceCountedImpl, RefusesProxiesDuringItsLastCall) {
  Events events;
  bool added = true;
  {
    YBase::SmartPtrI<Counted> held(new Counted(events, [&](auto& dying) { added = dying.TryAddRef(); }));
  }
  EXPECT_FALSE(added);
  EXPECT_THAT(events, ElementsAre(Event::HOOK, Event::DEATH));
}

TEST(ReferenceCountedImpl, IsDestroyedOnceEvenIfItsLastCallAddsAndReleasesReferences) {
  Events events;
  const auto comeAndGo = [](const Counted& dying) {
    const YBase::SmartPtrI<const Counted> first(&dying);
    const YBase::SmartPtrI<const Counted> second(&dying);
  };
  { YBase::SmartPtrI<Counted> held(new Counted(events, comeAndGo)); }
  EXPECT_THAT(events, ElementsAre(Event::HOOK, Event::DEATH));
}

TEST(ReferenceCountedImplDeathTest, RefusesToBeMadeReachableAgainInItsLastCall) {
  const auto resurrect = [] {
    Events events;
    YBase::SmartPtrI<Counted> held(new Counted(events, [](const Counted& dying) { dying.AddRef(); }));
  };
  EXPECT_DEBUG_DEATH(resurrect(), "made reachable again");
}

TEST(ReferenceCountedImpl, CountsCorrectlyWhenManyThreadsShareIt) {
  Events events;
  YBase::SmartPtrI<Counted> held(new Counted(events));
  std::vector<std::thread> threads;
  for (int i = 0; i != 4; ++i) {
    threads.emplace_back([held] {
      for (int k = 0; k != 10'000; ++k) YBase::SmartPtrI<Counted>{held};
    });
  }
  held = nullptr;
  for (std::thread& thread : threads) thread.join();
  // The other references were in the closures, which the threads have destroyed by now.
  EXPECT_THAT(events, ElementsAre(Event::HOOK, Event::DEATH));
}

}  // namespace

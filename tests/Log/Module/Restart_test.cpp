#include <barrier>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <YLog/YLog.h>
#include <YSynch/ThreadSpecificLogHeaders.h>

namespace {

constexpr auto CATEGORY = YSynch::LOCK_STACK_CATEGORY_OBJECT;

TEST(Restart, CreatesANewModule) {
  std::optional<YLog::Initializer> initializer(std::in_place);
  YLog::SetServerInstanceName(L"first");
  const auto logger = YLog::GetLogger("L", CATEGORY);
  initializer.reset();
  initializer.emplace();
  EXPECT_EQ(YLog::GetServerInstanceName(), L"");
  EXPECT_NE(YLog::GetLogger("L", CATEGORY), logger);
}

TEST(Restart, CallsWhileStoppedThrow) {
  EXPECT_THROW(YLog::GetServerInstanceName(), YBase::ExceptionImpl<YBase::Message>);
  { const YLog::Initializer initializer; }
  EXPECT_THROW(YLog::GetLogger("L", CATEGORY), YBase::ExceptionImpl<YBase::Message>);
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders(), nullptr);
}

TEST(Restart, DiscardsTheContextsOfRunningThreads) {
  std::optional<YLog::Initializer> initializer(std::in_place);
  constexpr int THREADS = 4;
  std::barrier step(THREADS + 1);
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([&] {
      YLog::SetEpisodeNumber(7);
      step.arrive_and_wait();
      step.arrive_and_wait();
      EXPECT_EQ(YLog::GetEpisodeNumber(), 0U);
    });
  }
  step.arrive_and_wait();
  initializer.reset();
  initializer.emplace();
  step.arrive_and_wait();
  threads.clear();
}

TEST(Restart, StartsAndStopsFromManyThreads) {
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 8; ++thread) {
    threads.emplace_back([] {
      for (int start = 0; start < 100; ++start) {
        const YLog::Initializer initializer;
        EXPECT_STREQ(YLog::GetLogger("L", CATEGORY)->GetName(), "L");
      }
    });
  }
}

TEST(Restart, RoutersAndDestinationsMayOutliveTheModule) {
  YBase::SmartPtrI<YLog::Router> router;
  YBase::SmartPtrI<YLog::Destination_DebugOutput> output;
  {
    const YLog::Initializer initializer;
    router = YLog::CreateRouter("L", "D", CATEGORY);
    output = YLog::GetDestination_DebugOutput();
  }
  EXPECT_STREQ(router->GetLogger()->GetName(), "L");
  EXPECT_FALSE(router->mEnabled);
}

}  // namespace

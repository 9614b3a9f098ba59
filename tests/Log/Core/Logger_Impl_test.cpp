#include "Core/Logger_Impl.h"

#include <atomic>
#include <thread>

#include <YLog/Initializer.h>

#include "support/Callbacks.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;
using Support::LoggerCallback;
using Support::New;
using Support::RecordingDestination;
using YBase::SmartPtrI;
using YLog::Logger_Impl;

class LoggerImpl : public testing::Test {
 protected:
  static SmartPtrI<Logger_Impl> CreateLogger() {
    return New<Logger_Impl>("Kernel", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  }

  const YLog::Initializer mInitializer;
};

TEST_F(LoggerImpl, ChangesOfItsDispatchersReachNobodyOnceItIsGone) {
  auto logger = CreateLogger();
  const auto dispatcher = logger->GetDispatcher(logger->ObtainCookie("Error"));
  int heard = 0;
  logger->RegisterCallback(New<LoggerCallback>([&](auto) { ++heard; }).Get());
  dispatcher->SetDestinations(Destinations());
  EXPECT_EQ(1, heard);
  logger = nullptr;
  dispatcher->SetDestinations(Destinations({New<RecordingDestination>()}));
  EXPECT_EQ(1, heard);
}

TEST_F(LoggerImpl, StaysAliveWhileItReportsAChange) {
  auto logger = CreateLogger();
  const auto dispatcher = logger->GetDispatcher(logger->ObtainCookie("Error"));
  int heard = 0;
  const auto callback = New<LoggerCallback>([&](auto) {
    logger = nullptr;
    ++heard;
  });
  logger->RegisterCallback(callback.Get());
  dispatcher->SetDestinations(Destinations());
  dispatcher->SetDestinations(Destinations());
  EXPECT_EQ(1, heard);
}

TEST_F(LoggerImpl, MayGoWhileItsDispatcherChanges) {
  for (int round = 0; round < 200; ++round) {
    auto logger = CreateLogger();
    const auto dispatcher = logger->GetDispatcher(logger->ObtainCookie("Error"));
    std::atomic<int> heard{0};
    logger->RegisterCallback(New<LoggerCallback>([&](auto) { ++heard; }).Get());
    {
      const std::jthread changing([&] {
        for (int change = 0; change < 10; ++change) dispatcher->SetDestinations(Destinations());
      });
      logger = nullptr;
    }
    const int before = heard;
    dispatcher->SetDestinations(Destinations());
    ASSERT_EQ(before, heard);
  }
}

}  // namespace

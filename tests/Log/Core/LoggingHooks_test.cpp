#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <YLog/YLog.h>

#include "support/ConfigurableHook.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::ConfigurableHook;
using Support::Destinations;
using Support::New;
using Support::RecordingDestination;
using testing::ElementsAre;
using testing::IsEmpty;
using YBase::SmartPtrI;

using DispatcherPtr = SmartPtrI<YLog::Dispatcher>;

constexpr auto CATEGORY = YSynch::LOCK_STACK_CATEGORY_OBJECT;

/// A hook that logs through the logger and the dispatcher that it is configuring. `mShown` has the names that
/// it was called for.
class LoggingHook : public testing::Test {
 protected:
  using OnDispatcher = std::function<void(DispatcherPtr&, YLog::Logger&)>;
  using OnLogger = std::function<void(YLog::Logger&)>;

  void Install(OnDispatcher onDispatcher, OnLogger onLogger = nullptr) {
    YLog::SetConfigurationHook(New<ConfigurableHook>(
                                   [=, this](auto& dispatcher, auto& logger) {
                                     mShown.push_back(std::string(logger.GetName()) + '/' +
                                                      dispatcher->GetName());
                                     if (onDispatcher) onDispatcher(dispatcher, logger);
                                   },
                                   [=, this](auto& logger) {
                                     mShown.emplace_back(logger.GetName());
                                     if (onLogger) onLogger(logger);
                                   })
                                   .Get());
  }
  static SmartPtrI<YLog::Router> CreateRouter(const char* dispatcherName = "Error",
                                              const char* loggerName = "Kernel") {
    return YLog::CreateRouter(loggerName, dispatcherName, CATEGORY);
  }
  static void Log(const char* text, const char* dispatcherName = "Error", const char* loggerName = "Kernel") {
    CreateRouter(dispatcherName, loggerName)->LogMessage(text, 0, nullptr, nullptr, 0);
  }

  const YLog::Initializer mInitializer;
  const SmartPtrI<RecordingDestination> mpDestination = New<RecordingDestination>();
  const YDataType::ObjectCollection<YLog::Destination> mOne = Destinations({mpDestination});
  std::vector<std::string> mShown;
};

TEST_F(LoggingHook, LogsThroughTheDispatcherAsConfiguredSoFar) {
  Install([&](auto& dispatcher, auto&) {
    Log("before");
    dispatcher->SetDestinations(mOne);
    Log("after");
  });
  const auto router = CreateRouter();
  EXPECT_TRUE(router->mEnabled);
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("after"));
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel/Error"));
  EXPECT_FALSE(router->GetLogger()->Dispatchers().GetDispatcher(0xDAFE)) << "there are two dispatchers";
}

TEST_F(LoggingHook, RoutersThatItCreatesFollowTheDispatcherThatItSubstitutes) {
  const auto own = YLog::CreateDispatcher("Own");
  SmartPtrI<YLog::Router> kept;
  Install([&](auto& dispatcher, auto&) {
    kept = CreateRouter();
    EXPECT_EQ(dispatcher, kept->GetDispatcher());
    dispatcher = own;
    dispatcher->SetDestinations(mOne);
  });
  EXPECT_EQ(own, CreateRouter()->GetDispatcher());
  EXPECT_EQ(own, kept->GetDispatcher());
  EXPECT_TRUE(kept->mEnabled);
  own->SetDestinations(Destinations());
  EXPECT_FALSE(kept->mEnabled);
}

TEST_F(LoggingHook, RoutersThatItCreatesFollowTheDispatcherThatItConfiguresAfterwards) {
  SmartPtrI<YLog::Router> kept;
  Install([&](auto& dispatcher, auto&) {
    kept = CreateRouter();
    EXPECT_FALSE(kept->mEnabled);
    dispatcher->SetDestinations(mOne);
  });
  CreateRouter();
  EXPECT_TRUE(kept->mEnabled);
}

TEST_F(LoggingHook, MayLogThroughTwoDispatchersInTurn) {
  Install([&](auto& dispatcher, auto&) {
    dispatcher->SetDestinations(mOne);
    for (const char* name : {"Error", "Info"}) Log(dispatcher->GetName(), name);
  });
  CreateRouter();
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel/Error", "Kernel/Info"));
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("Error", "Info", "Info", "Error"));
}

TEST_F(LoggingHook, MayLogThroughItsDispatcherAfterAnotherNewOne) {
  Install([&](auto& dispatcher, auto&) {
    dispatcher->SetDestinations(mOne);
    if (mShown.size() > 2) return;
    Log("first", "Info");
    Log("second", "Error");
  });
  CreateRouter();
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel/Error", "Kernel/Info"));
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("first", "second"));
}

TEST_F(LoggingHook, MayLogThroughTwoLoggersInTurn) {
  Install([&](auto& dispatcher, auto& logger) {
    dispatcher->SetDestinations(mOne);
    for (const char* name : {"Kernel", "User"}) Log(logger.GetName(), "Error", name);
  });
  CreateRouter();
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel/Error", "User", "User/Error"));
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("Kernel", "User", "User", "Kernel"));
}

TEST_F(LoggingHook, IsCalledAgainForAnotherThreadIfItHasNotUsedItsDispatcher) {
  DispatcherPtr others;
  Install([&](auto& dispatcher, auto&) {
    if (mShown.size() == 2) std::jthread([&] { others = CreateRouter()->GetDispatcher(); }).join();
    EXPECT_NE(others, dispatcher);
  });
  const auto own = CreateRouter()->GetDispatcher();
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel/Error", "Kernel/Error"));
}

TEST_F(LoggingHook, SharesADispatcherThatItHasUsedWithOtherThreads) {
  Install([&](auto& dispatcher, auto&) {
    Log("here");
    std::jthread([&] { EXPECT_EQ(dispatcher, CreateRouter()->GetDispatcher()); }).join();
  });
  CreateRouter();
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel/Error"));
}

TEST_F(LoggingHook, IsCalledAgainAfterItHasLoggedAndThrown) {
  Install([&](auto& dispatcher, auto&) {
    Log("here");
    if (mShown.size() == 2) throw std::runtime_error("hook");
    dispatcher->SetDestinations(mOne);
  });
  EXPECT_THROW(CreateRouter(), std::runtime_error);
  const auto router = CreateRouter();
  EXPECT_TRUE(router->mEnabled);
  EXPECT_EQ(router->GetDispatcher(), CreateRouter()->GetDispatcher());
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel/Error", "Kernel/Error"));
  EXPECT_FALSE(router->GetLogger()->Dispatchers().GetDispatcher(0xDAFE)) << "there are two dispatchers";
}

TEST_F(LoggingHook, IsNotCalledAgainForADispatcherThatARefreshHasConfigured) {
  Install([&](auto&, auto&) {
    Log("here");
    throw std::runtime_error("hook");
  });
  EXPECT_THROW(CreateRouter(), std::runtime_error);
  Install([&](auto& dispatcher, auto&) { dispatcher->SetDestinations(mOne); });
  YLog::RefreshConfiguration();
  mShown.clear();
  EXPECT_TRUE(CreateRouter()->mEnabled);
  EXPECT_THAT(mShown, IsEmpty());
}

TEST_F(LoggingHook, MayLogDuringARefresh) {
  Install([&](auto& dispatcher, auto&) { dispatcher->SetDestinations(mOne); });
  CreateRouter();
  mShown.clear();
  const auto own = YLog::CreateDispatcher("Error");
  Install([&](auto& dispatcher, auto&) {
    Log("before");
    dispatcher = own;
    Log("after");
  });
  YLog::RefreshConfiguration();
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("before", "after"));
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel/Error"));
  EXPECT_EQ(own, CreateRouter()->GetDispatcher());
}

TEST_F(LoggingHook, MayLogThroughTheLoggerThatItConfigures) {
  const YLog::Logger* own = nullptr;
  Install([&](auto& dispatcher, auto&) { dispatcher->SetDestinations(mOne); },
          [&](auto& logger) {
            own = YLog::GetLogger("Kernel", CATEGORY).Get();
            EXPECT_EQ(&logger, own);
            Log("here");
          });
  EXPECT_EQ(own, CreateRouter()->GetLogger());
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel/Error"));
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("here"));
}

TEST_F(LoggingHook, LoggerThatItHasUsedIsNotKeptIfItThrows) {
  bool fail = true;
  Install(nullptr, [&](auto& logger) {
    EXPECT_EQ(&logger, YLog::GetLogger("Kernel", CATEGORY).Get());
    if (fail) throw std::runtime_error("hook");
  });
  EXPECT_THROW(CreateRouter(), std::runtime_error);
  fail = false;
  CreateRouter();
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel", "Kernel/Error"));
}

TEST_F(LoggingHook, IsCalledSeparatelyForTheLoggerOfAnotherThread) {
  Install(nullptr, [&](auto& logger) {
    if (mShown.size() > 1) return;
    std::jthread([&] { EXPECT_NE(&logger, YLog::GetLogger("Kernel", CATEGORY).Get()); }).join();
  });
  YLog::GetLogger("Kernel", CATEGORY);
  EXPECT_THAT(mShown, ElementsAre("Kernel", "Kernel"));
}

}  // namespace

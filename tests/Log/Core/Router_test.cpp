#include <YLog/Router.h>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <YLog/YLog.h>

#include "support/Callbacks.h"
#include "support/ConfigurableHook.h"
#include "support/ForwardingDispatcher.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::ConfigurableHook;
using Support::Destinations;
using Support::LoggerCallback;
using Support::New;
using Support::Record;
using Support::RecordingDestination;
using YBase::SmartPtrI;

class Router : public testing::Test {
 protected:
  static SmartPtrI<YLog::Router> Create(const char* dispatcherName = "Error") {
    return YLog::CreateRouter("Kernel", dispatcherName, YSynch::LOCK_STACK_CATEGORY_OBJECT);
  }
  static SmartPtrI<YLog::Logger> GetLogger() {
    return YLog::GetLogger("Kernel", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  }

  const YLog::Initializer mInitializer;
  const YDataType::ObjectCollection<YLog::Destination> mOne = Destinations({New<RecordingDestination>()});
};

TEST_F(Router, IsDisabledUntilItsDispatcherGetsADestination) {
  const auto router = Create();
  EXPECT_FALSE(router->mEnabled);
  router->GetDispatcher()->SetDestinations(mOne);
  EXPECT_TRUE(router->mEnabled);
  router->GetDispatcher()->SetDestinations(Destinations());
  EXPECT_FALSE(router->mEnabled);
}

TEST_F(Router, IsEnabledFromTheStartIfTheHookSetsADestination) {
  YLog::SetConfigurationHook(
      New<ConfigurableHook>([&](auto& dispatcher, auto&) { dispatcher->SetDestinations(mOne); }).Get());
  EXPECT_TRUE(Create()->mEnabled);
}

TEST_F(Router, SharesItsDispatcherWithRoutersOfTheSameNames) {
  const auto one = Create();
  const auto other = Create();
  EXPECT_NE(one, other);
  EXPECT_EQ(one->GetLogger(), other->GetLogger());
  EXPECT_EQ(one->GetDispatcher(), other->GetDispatcher());
  one->GetDispatcher()->SetDestinations(mOne);
  EXPECT_TRUE(one->mEnabled);
  EXPECT_TRUE(other->mEnabled);
}

TEST_F(Router, LeavesItsFlagAloneWhenAnotherDispatcherChanges) {
  const auto error = Create("Error");
  const auto info = Create("Info");
  error->mEnabled = true;
  info->GetDispatcher()->SetDestinations(mOne);
  EXPECT_TRUE(error->mEnabled);
  error->mEnabled = false;
  info->GetDispatcher()->SetDestinations(mOne);
  EXPECT_FALSE(error->mEnabled);
  EXPECT_TRUE(info->mEnabled);
}

TEST_F(Router, FollowsTheDispatcherThatARefreshSubstitutes) {
  const auto router = Create();
  const auto replacement = YLog::CreateDispatcher("Error");
  replacement->SetDestinations(mOne);
  GetLogger()->RefreshConfiguration(
      *New<ConfigurableHook>([&](auto& dispatcher, auto&) { dispatcher = replacement; }));
  EXPECT_TRUE(router->mEnabled);
  EXPECT_EQ(replacement, router->GetDispatcher());
  replacement->SetDestinations(Destinations());
  EXPECT_FALSE(router->mEnabled);
}

TEST_F(Router, FollowsADispatcherSharedBySeveralNames) {
  const auto error = Create("Error");
  const auto info = Create("Info");
  const auto shared = YLog::CreateDispatcher("Shared");
  GetLogger()->RefreshConfiguration(
      *New<ConfigurableHook>([&](auto& dispatcher, auto&) { dispatcher = shared; }));
  shared->SetDestinations(mOne);
  EXPECT_TRUE(error->mEnabled);
  EXPECT_TRUE(info->mEnabled);
}

TEST_F(Router, ReturnsItsLoggerAndTheLoggersCatalogue) {
  const auto router = Create();
  EXPECT_EQ(GetLogger(), router->GetLogger());
  EXPECT_FALSE(router->GetResourceBundle());
}

TEST_F(Router, PassesMessagesOnRegardlessOfItsFlag) {
  const auto router = Create();
  const auto destination = New<RecordingDestination>();
  router->GetDispatcher()->SetDestinations(Destinations({destination}));
  router->mEnabled = false;
  router->LogMessage("text", 300, "main.cpp", "Run", 42);
  const Record record = destination->Records().at(0);
  EXPECT_EQ("text", record.text);
  EXPECT_EQ("Kernel", record.loggerName);
  EXPECT_EQ("Error", record.dispatcherName);
  EXPECT_EQ(300U, record.messageID);
  EXPECT_EQ("main.cpp", record.fileName);
  EXPECT_EQ("Run", record.funcName);
  EXPECT_EQ(42, record.lineNumber);
}

TEST_F(Router, PropagatesExceptionsOfTheHook) {
  YLog::SetConfigurationHook(
      New<ConfigurableHook>([](auto&, auto&) { throw std::runtime_error("hook"); }).Get());
  EXPECT_THROW(Create(), std::runtime_error);
}

/// A client's dispatcher that, when asked whether it is enabled, runs an action of the test between
/// determining the answer and returning it.
class SlowDispatcher final : public Support::ForwardingDispatcher {
 public:
  using Action = std::function<void(YLog::Dispatcher& inner, int question)>;

  SlowDispatcher(SmartPtrI<YLog::Dispatcher> inner, Action onQuestion)
      : ForwardingDispatcher(std::move(inner)), mOnQuestion(std::move(onQuestion)) {}

  bool IsEnabled() const override {
    const bool enabled = Inner().IsEnabled();
    mOnQuestion(Inner(), ++mQuestions);
    return enabled;
  }

 private:
  ~SlowDispatcher() override = default;

  const Action mOnQuestion;
  mutable int mQuestions = 0;
};

class SlowRouter : public Router {
 protected:
  static void SlowDown(SlowDispatcher::Action onQuestion) {
    YLog::SetConfigurationHook(New<ConfigurableHook>([onQuestion](auto& dispatcher, auto&) {
                                 dispatcher = New<SlowDispatcher>(dispatcher, onQuestion);
                               }).Get());
  }
};

TEST_F(SlowRouter, FlagIsRightAfterAChangeAtAnyMomentOfItsCreation) {
  for (const int moment : {1, 2}) {
    int questions = 0;
    SlowDown([&](YLog::Dispatcher& inner, int question) {
      questions = question;
      if (question == moment) inner.SetDestinations(mOne);
    });
    const auto router = Create(moment == 1 ? "Error" : "Info");
    EXPECT_GE(questions, moment);
    EXPECT_TRUE(router->mEnabled) << moment;
  }
}

TEST_F(SlowRouter, FlagIsRightAfterAChangeAtAnyMomentOfAnotherChange) {
  for (const int moment : {1, 2}) {
    int first = 0;
    bool changed = false;
    SlowDown([&](YLog::Dispatcher& inner, int question) {
      if (first == 0 || question != first + moment) return;
      changed = true;
      inner.SetDestinations(mOne);
    });
    const auto router = Create(moment == 1 ? "Error" : "Info");
    // The creation of a router asks twice.
    first = 2;
    router->GetDispatcher()->SetDestinations(Destinations());
    EXPECT_TRUE(changed);
    EXPECT_TRUE(router->mEnabled) << moment;
  }
}

TEST_F(SlowRouter, QueriesNoDispatcherAfterItsDestruction) {
  int questions = 0;
  SlowDown([&](auto&, int question) { questions = question; });
  auto router = Create();
  const auto dispatcher = router->GetDispatcher();
  dispatcher->SetDestinations(mOne);
  const int before = questions;
  EXPECT_GT(before, 0);
  router = nullptr;
  dispatcher->SetDestinations(Destinations());
  EXPECT_EQ(before, questions);
}

TEST_F(SlowRouter, IsReleasedWhenItsDispatcherThrowsDuringItsCreation) {
  int questions = 0;
  SlowDown([&](auto&, int question) {
    questions = question;
    if (question == 1) throw std::runtime_error("dispatcher");
  });
  EXPECT_THROW(Create(), std::runtime_error);
  GetLogger()->Dispatchers().GetDispatcher(0xDAFF)->SetDestinations(mOne);
  EXPECT_EQ(1, questions);
}

TEST_F(Router, MayBeReleasedByAnotherCallbackOfTheSameChange) {
  auto router = Create();
  const auto dispatcher = router->GetDispatcher();
  const auto callback = New<LoggerCallback>([&](auto) { router = nullptr; });
  GetLogger()->RegisterCallback(callback.Get());
  dispatcher->SetDestinations(mOne);
  EXPECT_EQ(nullptr, router.Get());
  GetLogger()->UnregisterCallback(callback.Get());
}

TEST_F(Router, ChangeDuringWhichItIsReleasedReachesNoNewRouter) {
  auto router = Create();
  const auto dispatcher = router->GetDispatcher();
  // Callbacks are called in the order of their addresses. With this many, at least one precedes the router's.
  std::vector<SmartPtrI<LoggerCallback>> callbacks;
  std::vector<SmartPtrI<YLog::Router>> routers;
  for (int count = 0; count < 64; ++count) {
    callbacks.push_back(New<LoggerCallback>([&](auto) {
      if (!router) return;
      router = nullptr;
      // One of these reuses the memory of the released router.
      for (int next = 0; next < 16; ++next) routers.push_back(Create());
      for (const auto& next : routers) next->mEnabled = false;
    }));
    GetLogger()->RegisterCallback(callbacks.back().Get());
  }
  dispatcher->SetDestinations(mOne);
  EXPECT_EQ(16U, routers.size());
  for (const auto& next : routers) EXPECT_FALSE(next->mEnabled);
}

/// Sets and clears a dispatcher's destinations in turn, `count` times in all. An odd count leaves them set.
void Flip(const SmartPtrI<YLog::Dispatcher>& dispatcher,
          const YDataType::ObjectCollection<YLog::Destination>& destinations, int count) {
  for (int flip = 0; flip < count; ++flip) {
    dispatcher->SetDestinations(flip % 2 == 0 ? destinations : Destinations());
  }
}

TEST_F(Router, FlagIsRightAfterChangesByTwoThreads) {
  const auto router = Create();
  for (int round = 0; round < 100; ++round) {
    {
      const std::jthread odd([&] { Flip(router->GetDispatcher(), mOne, 11); });
      const std::jthread even([&] { Flip(router->GetDispatcher(), mOne, 10); });
    }
    ASSERT_EQ(router->GetDispatcher()->IsEnabled(), router->mEnabled) << round;
  }
}

TEST_F(Router, FlagIsRightForRoutersCreatedWhileTheDispatcherChanges) {
  const auto dispatcher = Create()->GetDispatcher();
  for (int round = 0; round < 100; ++round) {
    std::vector<SmartPtrI<YLog::Router>> routers;
    {
      const std::jthread flipping([&] { Flip(dispatcher, mOne, 10 + round % 2); });
      for (int count = 0; count < 10; ++count) routers.push_back(Create());
    }
    for (const auto& router : routers) ASSERT_EQ(dispatcher->IsEnabled(), router->mEnabled) << round;
  }
}

TEST_F(Router, MayBeReleasedWhileTheDispatcherChanges) {
  const auto dispatcher = Create()->GetDispatcher();
  std::atomic<bool> stop{false};
  std::atomic<unsigned> changes{0};
  {
    const std::jthread flipping([&] {
      for (; !stop; ++changes) Flip(dispatcher, mOne, 2);
    });
    // Until there have been many of both.
    for (unsigned created = 0; created < 1000 || changes < 1000; ++created) Create();
    stop = true;
  }
  const auto last = Create();
  EXPECT_EQ(last->mEnabled, dispatcher->IsEnabled());
}

TEST_F(Router, FlagIsRightAfterSimultaneousRefreshesAndChanges) {
  const auto router = Create();
  for (int round = 0; round < 50; ++round) {
    {
      const std::jthread refreshing([&] {
        GetLogger()->RefreshConfiguration(*New<ConfigurableHook>(
            [](auto& dispatcher, auto&) { dispatcher = YLog::CreateDispatcher("Error"); }));
      });
      const std::jthread changing([&] { Flip(router->GetDispatcher(), mOne, 11); });
    }
    ASSERT_EQ(router->GetDispatcher()->IsEnabled(), router->mEnabled) << round;
  }
}

}  // namespace

#include <functional>
#include <latch>
#include <map>
#include <mutex>
#include <random>
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
using Support::RecordingDestination;
using testing::IsEmpty;
using YBase::SmartPtrI;

using Cookies = std::vector<unsigned short>;

/// A client's dispatcher that runs actions of the test, each of them once, before and after a callback is
/// registered and unregistered.
class SteppingDispatcher final : public Support::ForwardingDispatcher {
 public:
  using Step = std::function<void()>;

  explicit SteppingDispatcher(const char* name) : ForwardingDispatcher(YLog::CreateDispatcher(name)) {}

  void SetDestinations(const YDataType::ObjectCollection<YLog::Destination>& destinations) override {
    Inner().SetDestinations(destinations);
    for (const auto& callback : Callbacks()) callback->DispatcherChanged(*this);
  }
  void RegisterCallback(Callback* callback) override {
    Take(mBeforeRegistration);
    {
      const std::lock_guard lock(mMutex);
      mCallbacks.emplace(callback, callback);
    }
    Take(mAfterRegistration);
  }
  void UnregisterCallback(const Callback* callback) noexcept override {
    Take(mBeforeUnregistration);
    {
      const std::lock_guard lock(mMutex);
      mCallbacks.erase(callback);
    }
    Take(mAfterUnregistration);
  }

  Step mBeforeRegistration;
  Step mAfterRegistration;
  Step mBeforeUnregistration;
  Step mAfterUnregistration;

 private:
  ~SteppingDispatcher() override = default;

  static void Take(Step& step) {
    std::this_thread::yield();
    if (step) std::exchange(step, nullptr)();
  }
  std::vector<SmartPtrI<Callback>> Callbacks() const {
    const std::lock_guard lock(mMutex);
    std::vector<SmartPtrI<Callback>> callbacks;
    for (const auto& entry : mCallbacks) callbacks.push_back(entry.second);
    return callbacks;
  }

  mutable std::mutex mMutex;
  std::map<const Callback*, SmartPtrI<Callback>> mCallbacks;
};

/// Runs `work` on another thread and waits for it.
void OnAnotherThread(const std::function<void()>& work) {
  std::jthread(work).join();
}

class ConcurrentRefresh : public testing::Test {
 protected:
  /// Refreshes the logger so that the dispatcher takes this place in its list, and nothing else changes.
  void Put(int place, const SmartPtrI<YLog::Dispatcher>& dispatcher) const {
    mpLogger->RefreshConfiguration(*New<ConfigurableHook>([&, next = 0](auto& shown, auto&) mutable {
      if (next++ == place) shown = dispatcher;
    }));
  }
  /// Returns the cookies that the logger reports when the dispatcher changes.
  Cookies ReportedFor(YLog::Dispatcher& dispatcher) const {
    Cookies cookies;
    const auto callback = New<LoggerCallback>([&](unsigned short cookie) { cookies.push_back(cookie); });
    mpLogger->RegisterCallback(callback.Get());
    dispatcher.SetDestinations(Destinations());
    mpLogger->UnregisterCallback(callback.Get());
    return cookies;
  }
  static SmartPtrI<YLog::Router> CreateRouter(const char* dispatcherName) {
    return YLog::CreateRouter("Kernel", dispatcherName, YSynch::LOCK_STACK_CATEGORY_OBJECT);
  }

  const YLog::Initializer mInitializer;
  const SmartPtrI<YLog::Logger> mpLogger = YLog::GetLogger("Kernel", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const unsigned short mCookie = mpLogger->Dispatchers().ObtainCookie("Error");
  const YDataType::ObjectCollection<YLog::Destination> mOne = Destinations({New<RecordingDestination>()});
  const SmartPtrI<SteppingDispatcher> mpOne = New<SteppingDispatcher>("One");
  const SmartPtrI<SteppingDispatcher> mpOther = New<SteppingDispatcher>("Other");
};

TEST_F(ConcurrentRefresh, ListensToADispatcherBeforeOthersCanFindIt) {
  int registrations = 0;
  const auto isNotFoundYet = [&] {
    ++registrations;
    EXPECT_FALSE(mpLogger->Dispatchers().GetDispatcher(mCookie) == mpOne);
    EXPECT_FALSE(mpLogger->Dispatchers().GetDispatcher(mCookie - 1));
  };
  mpOther->mAfterRegistration = isNotFoundYet;
  YLog::SetConfigurationHook(
      New<ConfigurableHook>([&](auto& dispatcher, auto&) { dispatcher = mpOther; }).Get());
  EXPECT_EQ(mCookie - 1, mpLogger->Dispatchers().ObtainCookie("Info"));
  EXPECT_EQ(1, registrations);
}

TEST_F(ConcurrentRefresh, ListensToADispatcherThatIsPutBackDuringItsRemoval) {
  Put(0, mpOne);
  mpOne->mBeforeUnregistration = [&] { OnAnotherThread([&] { Put(0, mpOne); }); };
  Put(0, mpOther);
  EXPECT_EQ(mpOne, mpLogger->Dispatchers().GetDispatcher(mCookie));
  EXPECT_EQ(Cookies{mCookie}, ReportedFor(*mpOne));
  EXPECT_THAT(ReportedFor(*mpOther), IsEmpty());
}

TEST_F(ConcurrentRefresh, ListensToADispatcherWhoseRemovalEndsWhileItIsPutBack) {
  Put(0, mpOne);
  std::latch leaving(1);
  std::latch listened(1);
  mpOne->mBeforeUnregistration = [&] {
    leaving.count_down();
    listened.wait();
  };
  std::jthread replacing([&] { Put(0, mpOther); });
  leaving.wait();
  mpOne->mAfterRegistration = [&] {
    listened.count_down();
    replacing.join();
  };
  Put(0, mpOne);
  EXPECT_EQ(mpOne, mpLogger->Dispatchers().GetDispatcher(mCookie));
  EXPECT_EQ(Cookies{mCookie}, ReportedFor(*mpOne));
}

TEST_F(ConcurrentRefresh, ListensToADispatcherWhoseRemovalEndsWhileItIsAddedForAnotherName) {
  Put(0, mpOne);
  std::latch leaving(1);
  std::latch listened(1);
  mpOne->mBeforeUnregistration = [&] {
    leaving.count_down();
    listened.wait();
  };
  std::jthread replacing([&] { Put(0, mpOther); });
  leaving.wait();
  mpOne->mAfterRegistration = [&] {
    listened.count_down();
    replacing.join();
  };
  YLog::SetConfigurationHook(
      New<ConfigurableHook>([&](auto& dispatcher, auto&) { dispatcher = mpOne; }).Get());
  const unsigned short cookie = mpLogger->Dispatchers().ObtainCookie("Info");
  EXPECT_EQ(Cookies{cookie}, ReportedFor(*mpOne));
}

TEST_F(ConcurrentRefresh, StopsListeningToADispatcherThatIsRemovedAgainDuringItsNewRegistration) {
  Put(0, mpOne);
  mpOne->mBeforeUnregistration = [&] {
    OnAnotherThread([&] { Put(0, mpOne); });
    mpOne->mBeforeRegistration = [&] { OnAnotherThread([&] { Put(0, mpOther); }); };
  };
  Put(0, mpOther);
  EXPECT_FALSE(mpOne->mBeforeRegistration) << "the logger did not register again";
  EXPECT_EQ(mpOther, mpLogger->Dispatchers().GetDispatcher(mCookie));
  EXPECT_THAT(ReportedFor(*mpOne), IsEmpty());
  EXPECT_EQ(Cookies{mCookie}, ReportedFor(*mpOther));
}

TEST_F(ConcurrentRefresh, NeverStopsListeningToADispatcherThatIsStillInAnotherPlace) {
  const unsigned short info = mpLogger->Dispatchers().ObtainCookie("Info");
  Put(0, mpOne);
  Put(1, mpOne);
  bool stopped = false;
  mpOne->mBeforeUnregistration = [&] { stopped = true; };
  Put(0, mpOther);
  mpOne->mBeforeUnregistration = nullptr;
  EXPECT_FALSE(stopped);
  EXPECT_EQ(Cookies{info}, ReportedFor(*mpOne));
}

TEST_F(ConcurrentRefresh, RouterFlagIsRightAfterAChangeThatTheLoggerMissed) {
  const auto router = CreateRouter("Info");
  Put(0, mpOne);
  mpOne->mBeforeUnregistration = [&] { OnAnotherThread([&] { Put(1, mpOne); }); };
  mpOne->mAfterUnregistration = [&] { OnAnotherThread([&] { mpOne->SetDestinations(mOne); }); };
  Put(0, mpOther);
  EXPECT_FALSE(mpOne->mAfterUnregistration) << "the change did not happen";
  EXPECT_EQ(mpOne, router->GetDispatcher());
  EXPECT_TRUE(router->mEnabled);
}

TEST_F(ConcurrentRefresh, FlagOfANewRouterIsRightAfterAChangeThatTheLoggerMissed) {
  Put(0, mpOne);
  std::latch leaving(1);
  std::latch listened(1);
  mpOne->mBeforeUnregistration = [&] {
    leaving.count_down();
    listened.wait();
  };
  std::jthread replacing([&] { Put(0, mpOther); });
  leaving.wait();
  SmartPtrI<YLog::Router> router;
  mpOne->mAfterRegistration = [&] {
    listened.count_down();
    replacing.join();
    mpOne->mBeforeRegistration = [&] {
      OnAnotherThread([&] {
        router = CreateRouter("One");
        mpOne->SetDestinations(mOne);
      });
    };
  };
  YLog::SetConfigurationHook(
      New<ConfigurableHook>([&](auto& dispatcher, auto&) { dispatcher = mpOne; }).Get());
  mpLogger->Dispatchers().ObtainCookie("Info");
  ASSERT_TRUE(router) << "the logger did not register again";
  EXPECT_TRUE(router->mEnabled);
}

TEST_F(ConcurrentRefresh, LoggerListensToExactlyTheDispatchersInItsListAfterManyRefreshes) {
  const unsigned short info = mpLogger->Dispatchers().ObtainCookie("Info");
  const auto refresh = [&](unsigned seed) {
    std::minstd_rand random(seed);
    for (int count = 0; count < 20; ++count) {
      mpLogger->RefreshConfiguration(*New<ConfigurableHook>(
          [&](auto& dispatcher, auto&) { dispatcher = random() % 2 == 0 ? mpOne : mpOther; }));
    }
  };
  for (unsigned round = 1; round <= 500; ++round) {
    { const std::jthread threads[] = {std::jthread(refresh, round), std::jthread(refresh, round + 500)}; }
    for (const auto& dispatcher : {mpOne, mpOther}) {
      Cookies places;
      for (const unsigned short cookie : {mCookie, info}) {
        if (mpLogger->Dispatchers().GetDispatcher(cookie) == dispatcher) places.push_back(cookie);
      }
      ASSERT_EQ(places, ReportedFor(*dispatcher)) << round;
    }
  }
}

}  // namespace

#include <YLog/Logger.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <YLog/YLog.h>

#include "support/Callbacks.h"
#include "support/ConfigurableHook.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::ConfigurableHook;
using Support::Destinations;
using Support::LoggerCallback;
using Support::New;
using Support::Record;
using Support::RecordingDestination;
using testing::ElementsAre;
using YBase::SmartPtrI;

using Cookies = std::vector<unsigned short>;

class Logger : public testing::Test {
 protected:
  unsigned short Obtain(const char* name) const { return mpLogger->Dispatchers().ObtainCookie(name); }
  SmartPtrI<YLog::Dispatcher> Get(unsigned short cookie) const {
    return mpLogger->Dispatchers().GetDispatcher(cookie);
  }
  void Log(unsigned short cookie) const { mpLogger->LogMessage(cookie, "text", 300, "main.cpp", "Run", 42); }
  void Refresh(ConfigurableHook::OnDispatcher onDispatcher) const {
    mpLogger->RefreshConfiguration(*New<ConfigurableHook>(std::move(onDispatcher)));
  }
  /// Appends the cookies that the logger reports from now on.
  SmartPtrI<LoggerCallback> Listen(Cookies& reported) const {
    auto callback = New<LoggerCallback>([&reported](unsigned short cookie) { reported.push_back(cookie); });
    mpLogger->RegisterCallback(callback.Get());
    return callback;
  }

  const YLog::Initializer mInitializer;
  const SmartPtrI<YLog::Logger> mpLogger = YLog::GetLogger("Kernel", YSynch::LOCK_STACK_CATEGORY_OBJECT);
};

TEST_F(Logger, IssuesCookiesFrom0xDAFFDownwards) {
  EXPECT_EQ(0xDAFF, Obtain("Error"));
  EXPECT_EQ(0xDAFE, Obtain("Info"));
  EXPECT_EQ(0xDAFD, Obtain("Debug"));
  EXPECT_EQ(0xDAFF, Obtain("Error"));
}

TEST_F(Logger, CreatesNoSecondDispatcherForAName) {
  const auto dispatcher = Get(Obtain("Error"));
  EXPECT_EQ(dispatcher, Get(Obtain("Error")));
  EXPECT_FALSE(Get(0xDAFE));
}

TEST_F(Logger, DistinguishesNamesByCase) {
  EXPECT_NE(Obtain("Error"), Obtain("error"));
}

TEST_F(Logger, AcceptsAnEmptyNameAndALongOneWithUnprintableBytes) {
  const std::string name = std::string(10'000, '\xFE') + "\n\x01";
  EXPECT_STREQ("", Get(Obtain(""))->GetName());
  EXPECT_EQ(name, Get(Obtain(name.c_str()))->GetName());
  EXPECT_EQ(0xDAFE, Obtain(name.c_str()));
}

TEST_F(Logger, RefusesNullForADispatcherName) {
  EXPECT_DEBUG_DEATH(Obtain(nullptr), "text != nullptr");
}

TEST_F(Logger, CreatesDisabledDispatchersWithoutAHook) {
  const auto dispatcher = Get(Obtain("Error"));
  EXPECT_STREQ("Error", dispatcher->GetName());
  EXPECT_FALSE(dispatcher->IsEnabled());
}

TEST_F(Logger, PassesEachNewDispatcherToTheHookOnce) {
  std::vector<std::string> shown;
  YLog::SetConfigurationHook(New<ConfigurableHook>([&](auto& dispatcher, YLog::Logger& logger) {
                               EXPECT_EQ(mpLogger.Get(), &logger);
                               shown.push_back(dispatcher->GetName());
                               dispatcher->SetDestinations(Destinations({New<RecordingDestination>()}));
                             }).Get());
  EXPECT_TRUE(Get(Obtain("Error"))->IsEnabled());
  Obtain("Info");
  Obtain("Error");
  EXPECT_THAT(shown, ElementsAre("Error", "Info"));
}

TEST_F(Logger, UsesTheDispatcherThatTheHookSubstitutes) {
  const auto own = YLog::CreateDispatcher("Own");
  YLog::SetConfigurationHook(New<ConfigurableHook>([&](auto& dispatcher, auto&) { dispatcher = own; }).Get());
  Cookies reported;
  Listen(reported);
  const unsigned short cookie = Obtain("Error");
  EXPECT_EQ(own, Get(cookie));
  own->SetDestinations(Destinations());
  EXPECT_EQ(Cookies{cookie}, reported);
}

TEST_F(Logger, FindsDispatchersByTheirOwnName) {
  const auto own = YLog::CreateDispatcher("Own");
  YLog::SetConfigurationHook(New<ConfigurableHook>([&](auto& dispatcher, auto&) { dispatcher = own; }).Get());
  const unsigned short cookie = Obtain("Error");
  EXPECT_EQ(cookie, Obtain("Own"));
  EXPECT_NE(cookie, Obtain("Error"));
}

TEST_F(Logger, KeepsTheDispatcherIfTheHookStoresNull) {
  YLog::SetConfigurationHook(
      New<ConfigurableHook>([](auto& dispatcher, auto&) { dispatcher = nullptr; }).Get());
  const auto dispatcher = Get(Obtain("Error"));
  ASSERT_TRUE(dispatcher);
  EXPECT_STREQ("Error", dispatcher->GetName());
  Cookies reported;
  Listen(reported);
  Refresh([](auto& refreshed, auto&) { refreshed = nullptr; });
  EXPECT_EQ(dispatcher, Get(0xDAFF));
  EXPECT_EQ(Cookies(), reported);
}

TEST_F(Logger, AddsNoDispatcherIfTheHookThrows) {
  YLog::SetConfigurationHook(
      New<ConfigurableHook>([](auto&, auto&) { throw std::runtime_error("hook"); }).Get());
  EXPECT_THROW(Obtain("Error"), std::runtime_error);
  EXPECT_FALSE(Get(0xDAFF));
}

TEST_F(Logger, HookMayAskTheLoggerForOtherDispatchers) {
  YLog::SetConfigurationHook(New<ConfigurableHook>([](auto& dispatcher, YLog::Logger& logger) {
                               if (std::string("Error") != dispatcher->GetName()) return;
                               EXPECT_EQ(0xDAFF, logger.Dispatchers().ObtainCookie("Info"));
                             }).Get());
  EXPECT_EQ(0xDAFE, Obtain("Error"));
}

TEST_F(Logger, PassesMessagesToTheDispatcherOfTheCookie) {
  const unsigned short error = Obtain("Error");
  const unsigned short info = Obtain("Info");
  const auto errors = New<RecordingDestination>();
  const auto infos = New<RecordingDestination>();
  Get(error)->SetDestinations(Destinations({errors}));
  Get(info)->SetDestinations(Destinations({infos}));
  Log(info);
  EXPECT_EQ(0U, errors->Records().size());
  const Record record = infos->Records().at(0);
  EXPECT_EQ("Kernel", record.loggerName);
  EXPECT_EQ("Info", record.dispatcherName);
  EXPECT_EQ("text", record.text);
  EXPECT_EQ(300U, record.messageID);
  EXPECT_EQ("main.cpp", record.fileName);
  EXPECT_EQ("Run", record.funcName);
  EXPECT_EQ(42, record.lineNumber);
}

TEST_F(Logger, DropsMessagesForCookiesThatItDidNotIssue) {
  Obtain("Error");
  for (const int cookie : {0, 0xDAFE, 0xFFFF, 0x2500}) {
    EXPECT_FALSE(Get(static_cast<unsigned short>(cookie))) << cookie;
    Log(static_cast<unsigned short>(cookie));
  }
}

TEST_F(Logger, PropagatesExceptionsOfADestination) {
  const unsigned short cookie = Obtain("Error");
  Get(cookie)->SetDestinations(
      Destinations({New<RecordingDestination>([](auto, const auto&) { throw std::runtime_error("full"); })}));
  EXPECT_THROW(Log(cookie), std::runtime_error);
}

TEST_F(Logger, ReportsChangesWithTheCookieOfTheDispatcher) {
  const unsigned short error = Obtain("Error");
  const unsigned short info = Obtain("Info");
  Cookies reported;
  const auto callback = Listen(reported);
  Get(info)->SetDestinations(Destinations());
  Get(error)->SetDestinations(Destinations());
  EXPECT_EQ((Cookies{info, error}), reported);
  mpLogger->UnregisterCallback(callback.Get());
  Get(error)->SetDestinations(Destinations());
  EXPECT_EQ(2U, reported.size());
}

TEST_F(Logger, CallsACallbackThatIsRegisteredTwiceOnlyOnceAndSkipsNull) {
  const unsigned short cookie = Obtain("Error");
  Cookies reported;
  const auto callback = Listen(reported);
  mpLogger->RegisterCallback(callback.Get());
  mpLogger->RegisterCallback(nullptr);
  Get(cookie)->SetDestinations(Destinations());
  EXPECT_EQ(Cookies{cookie}, reported);
  mpLogger->UnregisterCallback(callback.Get());
  mpLogger->UnregisterCallback(callback.Get());
  Get(cookie)->SetDestinations(Destinations());
  EXPECT_EQ(Cookies{cookie}, reported);
}

TEST_F(Logger, CallbackMayCallTheLogger) {
  const unsigned short cookie = Obtain("Error");
  SmartPtrI<LoggerCallback> callback;
  callback = New<LoggerCallback>([&](unsigned short changed) {
    EXPECT_TRUE(Get(changed)->IsEnabled());
    EXPECT_EQ(0xDAFE, Obtain("Info"));
    mpLogger->UnregisterCallback(callback.Get());
  });
  mpLogger->RegisterCallback(callback.Get());
  Get(cookie)->SetDestinations(Destinations({New<RecordingDestination>()}));
  EXPECT_TRUE(Get(0xDAFE));
}

TEST_F(Logger, PropagatesExceptionsOfACallback) {
  const auto callback = New<LoggerCallback>([](auto) { throw std::runtime_error("callback"); });
  mpLogger->RegisterCallback(callback.Get());
  const auto dispatcher = Get(Obtain("Error"));
  EXPECT_THROW(dispatcher->SetDestinations(Destinations()), std::runtime_error);
}

TEST_F(Logger, DistinguishesDispatchersOfTheSameName) {
  Obtain("Error");
  Obtain("Info");
  const auto twin = YLog::CreateDispatcher("Error");
  Refresh([&](auto& dispatcher, auto&) {
    if (std::string("Info") == dispatcher->GetName()) dispatcher = twin;
  });
  Cookies reported;
  Listen(reported);
  twin->SetDestinations(Destinations());
  EXPECT_EQ(Cookies{0xDAFE}, reported);
}

TEST_F(Logger, ReportsAChangeWithEveryCookieOfTheDispatcher) {
  Obtain("Error");
  Obtain("Info");
  Obtain("Debug");
  const auto shared = YLog::CreateDispatcher("Shared");
  Refresh([&](auto& dispatcher, auto&) {
    if (std::string("Info") != dispatcher->GetName()) dispatcher = shared;
  });
  Cookies reported;
  Listen(reported);
  shared->SetDestinations(Destinations());
  EXPECT_EQ((Cookies{0xDAFF, 0xDAFD}), reported);
}

TEST_F(Logger, KeepsListeningToADispatcherThatIsStillInAnotherPlace) {
  Obtain("Error");
  Obtain("Info");
  const auto shared = YLog::CreateDispatcher("Shared");
  Refresh([&](auto& dispatcher, auto&) { dispatcher = shared; });
  int shown = 0;
  Refresh([&](auto& dispatcher, auto&) {
    if (++shown == 1) dispatcher = YLog::CreateDispatcher("Other");
  });
  Cookies reported;
  Listen(reported);
  shared->SetDestinations(Destinations());
  EXPECT_EQ(Cookies{0xDAFE}, reported);
}

/// A client's dispatcher that reports a change as soon as a callback is registered.
class RestlessDispatcher final : public YLog::Dispatcher,
                                 public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit RestlessDispatcher(const char* name) : mName(name) {}

  const char* GetName() const override { return mName.c_str(); }
  bool IsEnabled() const override { return false; }
  void LogMessage(const YLog::Logger&, const char*, unsigned, const char*, const char*, int) const override {}
  void LogMessage(const YLog::Logger&, const YBase::Message&) const override {}
  void LogMessage(const YLog::Logger&, YBase::Message&) const override {}
  void SetDestinations(const YDataType::ObjectCollection<YLog::Destination>&) override {}
  void RegisterCallback(Callback* callback) override { callback->DispatcherChanged(*this); }
  void UnregisterCallback(const Callback*) noexcept override {}
  void GetMessageTextJSON(const YLog::Logger&, const char*, unsigned, const char*, const char*, int,
                          std::string&) const override {}

 private:
  ~RestlessDispatcher() override = default;

  const std::string mName;
};

TEST_F(Logger, ReportsADispatcherThatIsNotYetInTheListWithTheNextCookie) {
  YLog::SetConfigurationHook(New<ConfigurableHook>([](auto& dispatcher, auto&) {
                               dispatcher = New<RestlessDispatcher>(dispatcher->GetName());
                             }).Get());
  Cookies reported;
  Listen(reported);
  Obtain("Error");
  Obtain("Info");
  EXPECT_EQ((Cookies{0xDAFF, 0xDAFE}), reported);
}

TEST_F(Logger, ReportsADispatcherThatIsNotYetInTheListWithTheCookieOfItsName) {
  Obtain("Error");
  Obtain("Info");
  Cookies reported;
  Listen(reported);
  Refresh([](auto& dispatcher, auto&) {
    if (std::string("Info") == dispatcher->GetName()) dispatcher = New<RestlessDispatcher>("Error");
  });
  EXPECT_EQ((Cookies{0xDAFF, 0xDAFE}), reported);
}

TEST_F(Logger, RefreshVisitsTheDispatchersInOrderAndReportsNothingIfNothingChanges) {
  Obtain("Error");
  Obtain("Info");
  Cookies reported;
  Listen(reported);
  std::vector<std::string> shown;
  Refresh([&](auto& dispatcher, YLog::Logger& logger) {
    EXPECT_EQ(mpLogger.Get(), &logger);
    shown.push_back(dispatcher->GetName());
  });
  EXPECT_THAT(shown, ElementsAre("Error", "Info"));
  EXPECT_EQ(Cookies(), reported);
}

TEST_F(Logger, RefreshKeepsTheCookieOfAReplacedDispatcher) {
  const unsigned short cookie = Obtain("Error");
  const auto previous = Get(cookie);
  const auto replacement = YLog::CreateDispatcher("Error");
  Cookies reported;
  Listen(reported);
  Refresh([&](auto& dispatcher, auto&) { dispatcher = replacement; });
  EXPECT_EQ(replacement, Get(cookie));
  EXPECT_EQ(Cookies{cookie}, reported);

  replacement->SetDestinations(Destinations());
  EXPECT_EQ((Cookies{cookie, cookie}), reported);
  previous->SetDestinations(Destinations());
  EXPECT_EQ(2U, reported.size());
}

TEST_F(Logger, RefreshVisitsDispatchersThatTheHookAdds) {
  Obtain("Error");
  std::vector<std::string> shown;
  Refresh([&](auto& dispatcher, auto&) {
    shown.push_back(dispatcher->GetName());
    Obtain("Info");
  });
  EXPECT_THAT(shown, ElementsAre("Error", "Info"));
}

TEST_F(Logger, RefreshThatThrowsKeepsTheReplacementsMadeBefore) {
  Obtain("Error");
  Obtain("Info");
  const auto info = Get(0xDAFE);
  const auto replacement = YLog::CreateDispatcher("Replacement");
  EXPECT_THROW(Refresh([&](auto& dispatcher, auto&) {
                 if (dispatcher == info) throw std::runtime_error("hook");
                 dispatcher = replacement;
               }),
               std::runtime_error);
  EXPECT_EQ(replacement, Get(0xDAFF));
  EXPECT_EQ(info, Get(0xDAFE));
}

class Catalogue final : public YResource::Bundle, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit Catalogue(std::function<void()> onDestruction = nullptr)
      : mOnDestruction(std::move(onDestruction)) {}

  YResource::MessageTemplate GetMessageTemplate(unsigned, unsigned short, const char*) const override {
    return {};
  }
  YBase::ReturnString GetString(unsigned, unsigned short, const char*) const override { return {}; }

 private:
  ~Catalogue() override {
    if (mOnDestruction) mOnDestruction();
  }

  const std::function<void()> mOnDestruction;
};

TEST_F(Logger, HoldsItsCatalogueUntilItIsReplaced) {
  bool destroyed = false;
  EXPECT_FALSE(mpLogger->GetResourceBundle());
  const Catalogue* previous = nullptr;
  {
    // It is destroyed with no lock held, so it may call the logger.
    const auto catalogue =
        New<Catalogue>([&] { destroyed = static_cast<bool>(mpLogger->GetResourceBundle()); });
    previous = catalogue.Get();
    mpLogger->SetResourceBundle(catalogue.Get());
    mpLogger->SetResourceBundle(catalogue.Get());
  }
  EXPECT_EQ(previous, mpLogger->GetResourceBundle().Get());
  mpLogger->SetResourceBundle(New<Catalogue>().Get());
  EXPECT_TRUE(destroyed);
  mpLogger->SetResourceBundle(nullptr);
  EXPECT_FALSE(mpLogger->GetResourceBundle());
}

TEST_F(Logger, RefreshLosesNoMessageOfOtherThreads) {
  const unsigned short cookie = Obtain("Error");
  const auto destination = New<RecordingDestination>();
  const auto replace = [&](auto& dispatcher, auto&) {
    dispatcher = YLog::CreateDispatcher("Error");
    dispatcher->SetDestinations(Destinations({destination}));
  };
  Refresh(replace);
  std::atomic<int> running{4};
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (int message = 0; message < 1'000; ++message) Log(cookie);
      --running;
    });
  }
  while (running > 0) Refresh(replace);
  threads.clear();
  EXPECT_EQ(4'000U, destination->Records().size());
}

TEST_F(Logger, ListensToTheLastDispatcherAfterRefreshesByTwoThreads) {
  const unsigned short cookie = Obtain("Error");
  const auto replace = [&] {
    for (int count = 0; count < 300; ++count) {
      Refresh([](auto& dispatcher, auto&) { dispatcher = YLog::CreateDispatcher("Error"); });
    }
  };
  { const std::jthread threads[] = {std::jthread(replace), std::jthread(replace)}; }
  Cookies reported;
  Listen(reported);
  Get(cookie)->SetDestinations(Destinations());
  EXPECT_EQ(Cookies{cookie}, reported);
}

TEST_F(Logger, ThreadsThatAskForTheSameNewNameAtOnceGetValidCookies) {
  std::atomic<unsigned> enabled{0};
  YLog::SetConfigurationHook(New<ConfigurableHook>([](auto& dispatcher, auto&) {
                               dispatcher->SetDestinations(Destinations({New<RecordingDestination>()}));
                             }).Get());
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] { enabled += Get(Obtain("Error"))->IsEnabled() ? 1U : 0U; });
  }
  threads.clear();
  EXPECT_EQ(4U, enabled);
}

}  // namespace

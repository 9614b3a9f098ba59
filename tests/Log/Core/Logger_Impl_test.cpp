#include "Core/Logger_Impl.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <YLog/ConfigurationHook.h>
#include <YLog/Initializer.h>

#include "support/Callbacks.h"
#include "support/ConfigurableHook.h"
#include "support/ForwardingDispatcher.h"
#include "support/New.h"
#include "support/RecordingBundle.h"
#include "support/RecordingDestination.h"

namespace {

using Support::ConfigurableHook;
using Support::Destinations;
using Support::LoggerCallback;
using Support::New;
using Support::RecordingBundle;
using Support::RecordingDestination;
using testing::ElementsAre;
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

/// A client's dispatcher that still knows the callback that was registered last, when it no longer is.
class RememberingDispatcher final : public Support::ForwardingDispatcher {
 public:
  using ForwardingDispatcher::ForwardingDispatcher;

  void RegisterCallback(Callback* callback) override {
    mpCallback = SmartPtrI<Callback>(callback);
    mbRegistered = true;
  }
  void UnregisterCallback(const Callback* callback) noexcept override {
    if (mpCallback == callback) mbRegistered = false;
  }

  SmartPtrI<Callback> mpCallback;
  bool mbRegistered = false;

 private:
  ~RememberingDispatcher() override = default;
};

TEST_F(LoggerImpl, UnregistersFromAllItsDispatchersWhenItGoes) {
  std::vector<SmartPtrI<RememberingDispatcher>> dispatchers;
  YLog::SetConfigurationHook(New<ConfigurableHook>([&](auto& dispatcher, auto&) {
                               dispatchers.push_back(New<RememberingDispatcher>(dispatcher));
                               dispatcher = dispatchers.back();
                             }).Get());
  auto logger = CreateLogger();
  for (const char* name : {"Error", "Info", "Debug"}) logger->ObtainCookie(name);
  for (const auto& dispatcher : dispatchers) EXPECT_TRUE(dispatcher->mbRegistered);
  logger = nullptr;
  for (const auto& dispatcher : dispatchers) EXPECT_FALSE(dispatcher->mbRegistered);
  EXPECT_EQ(3U, dispatchers.size());
}

TEST_F(LoggerImpl, ChangeThatIsUnderWayWhenItGoesReachesNoneThatComesAfterIt) {
  const auto dispatcher = New<RememberingDispatcher>(YLog::CreateDispatcher("Error"));
  YLog::SetConfigurationHook(
      New<ConfigurableHook>([&](auto& configured, auto&) { configured = dispatcher; }).Get());
  CreateLogger()->ObtainCookie("Error");
  // One of these has the memory of the first, where a forgotten pointer would lead. With a sanitizer none
  // has, and the sanitizer would complain instead.
  std::vector<SmartPtrI<Logger_Impl>> loggers;
  int heard = 0;
  for (int count = 0; count < 16; ++count) {
    loggers.push_back(CreateLogger());
    loggers.back()->RegisterCallback(New<LoggerCallback>([&](auto) { ++heard; }).Get());
  }
  ASSERT_TRUE(dispatcher->mpCallback);
  dispatcher->mpCallback->DispatcherChanged(*dispatcher);
  EXPECT_EQ(0, heard);
}

/// A client's dispatcher that notes its name when it is destroyed.
class MortalDispatcher final : public Support::ForwardingDispatcher {
 public:
  MortalDispatcher(SmartPtrI<YLog::Dispatcher> inner, std::vector<std::string>& destroyed)
      : ForwardingDispatcher(std::move(inner)), mDestroyed(destroyed) {}

 private:
  ~MortalDispatcher() override { mDestroyed.emplace_back(GetName()); }

  std::vector<std::string>& mDestroyed;
};

/// Does something when the last copy is destroyed.
std::shared_ptr<void> AtTheEnd(std::function<void()> action) {
  return {nullptr, [action = std::move(action)](void*) { action(); }};
}

TEST_F(LoggerImpl, ReleasesItsCallbacksThenItsDispatchersBackToFrontThenItsCatalogue) {
  std::vector<std::string> destroyed;
  YLog::SetConfigurationHook(New<ConfigurableHook>([&](auto& dispatcher, auto&) {
                               dispatcher = New<MortalDispatcher>(dispatcher, destroyed);
                             }).Get());
  auto logger = CreateLogger();
  logger->SetResourceBundle(
      New<RecordingBundle>("", nullptr, [&] { destroyed.emplace_back("catalogue"); }).Get());
  for (const char* name : {"Error", "Info", "Debug"}) logger->ObtainCookie(name);
  logger->RegisterCallback(
      New<LoggerCallback>([end = AtTheEnd([&] { destroyed.emplace_back("callback"); })](auto) {}).Get());
  logger = nullptr;
  EXPECT_THAT(destroyed, ElementsAre("callback", "Debug", "Info", "Error", "catalogue"));
}

}  // namespace

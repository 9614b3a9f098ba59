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

TEST_F(LoggerImpl, ReportsNoChangeAfterItsDestruction) {
  auto logger = CreateLogger();
  const auto dispatcher = logger->GetDispatcher(logger->ObtainCookie("Error"));
  int notifications = 0;
  logger->RegisterCallback(New<LoggerCallback>([&](auto) { ++notifications; }).Get());
  dispatcher->SetDestinations(Destinations());
  EXPECT_EQ(1, notifications);
  logger = nullptr;
  dispatcher->SetDestinations(Destinations({New<RecordingDestination>()}));
  EXPECT_EQ(1, notifications);
}

TEST_F(LoggerImpl, StaysAliveWhileItReportsAChange) {
  auto logger = CreateLogger();
  const auto dispatcher = logger->GetDispatcher(logger->ObtainCookie("Error"));
  int notifications = 0;
  const auto callback = New<LoggerCallback>([&](auto) {
    logger = nullptr;
    ++notifications;
  });
  logger->RegisterCallback(callback.Get());
  dispatcher->SetDestinations(Destinations());
  dispatcher->SetDestinations(Destinations());
  EXPECT_EQ(1, notifications);
}

TEST_F(LoggerImpl, MayBeDestroyedWhileItsDispatcherChanges) {
  for (int round = 0; round < 200; ++round) {
    auto logger = CreateLogger();
    const auto dispatcher = logger->GetDispatcher(logger->ObtainCookie("Error"));
    std::atomic<int> notifications{0};
    logger->RegisterCallback(New<LoggerCallback>([&](auto) { ++notifications; }).Get());
    {
      const std::jthread changing([&] {
        for (int change = 0; change < 10; ++change) dispatcher->SetDestinations(Destinations());
      });
      logger = nullptr;
    }
    const int before = notifications;
    dispatcher->SetDestinations(Destinations());
    ASSERT_EQ(before, notifications);
  }
}

/// A client's dispatcher that remembers the callback registered last, even after it is unregistered.
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

TEST_F(LoggerImpl, UnregistersFromAllItsDispatchersOnDestruction) {
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

TEST_F(LoggerImpl, LateChangeAfterItsDestructionReachesNoNewLogger) {
  const auto dispatcher = New<RememberingDispatcher>(YLog::CreateDispatcher("Error"));
  YLog::SetConfigurationHook(
      New<ConfigurableHook>([&](auto& configured, auto&) { configured = dispatcher; }).Get());
  CreateLogger()->ObtainCookie("Error");
  // One of these reuses the memory of the destroyed logger, so it would be called through a dangling
  // pointer. Under a sanitizer none does, and the sanitizer would report the pointer instead.
  std::vector<SmartPtrI<Logger_Impl>> loggers;
  int notifications = 0;
  for (int count = 0; count < 16; ++count) {
    loggers.push_back(CreateLogger());
    loggers.back()->RegisterCallback(New<LoggerCallback>([&](auto) { ++notifications; }).Get());
  }
  ASSERT_TRUE(dispatcher->mpCallback);
  dispatcher->mpCallback->DispatcherChanged(*dispatcher);
  EXPECT_EQ(0, notifications);
}

/// A client's dispatcher that records its name when it is destroyed.
class MortalDispatcher final : public Support::ForwardingDispatcher {
 public:
  MortalDispatcher(SmartPtrI<YLog::Dispatcher> inner, std::vector<std::string>& destroyed)
      : ForwardingDispatcher(std::move(inner)), mDestroyed(destroyed) {}

 private:
  ~MortalDispatcher() override { mDestroyed.emplace_back(GetName()); }

  std::vector<std::string>& mDestroyed;
};

/// Runs `action` when the last copy is destroyed.
std::shared_ptr<void> AtTheEnd(std::function<void()> action) {
  return {nullptr, [action = std::move(action)](void*) { action(); }};
}

TEST_F(LoggerImpl, ReleasesItsCallbacksThenItsDispatchersInReverseOrderThenItsCatalogue) {
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

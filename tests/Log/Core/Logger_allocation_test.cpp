#include <new>

#include <YLog/YLog.h>

#include "support/AllocationCounter.h"
#include "support/ConfigurableHook.h"
#include "support/ForwardingDispatcher.h"
#include "support/New.h"

namespace {

using Support::ConfigurableHook;
using Support::New;
using YBase::SmartPtrI;

/// A client's dispatcher that allocates nothing for callbacks, and counts how often they are registered and
/// unregistered.
class CountingDispatcher final : public Support::ForwardingDispatcher {
 public:
  using ForwardingDispatcher::ForwardingDispatcher;

  void RegisterCallback(Callback*) override { ++mRegistrations; }
  void UnregisterCallback(const Callback*) noexcept override { ++mUnregistrations; }

  int mRegistrations = 0;
  int mUnregistrations = 0;

 private:
  ~CountingDispatcher() override = default;
};

class LoggerWithoutMemory : public testing::Test {
 protected:
  /// Whether a dispatcher is added if `successes` allocations succeed and the next one fails.
  bool Adds(unsigned long successes) const {
    const Support::AllocationFailure failure(successes);
    try {
      mpLogger->Dispatchers().ObtainCookie("Info");
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }

  const YLog::Initializer mInitializer;
  const SmartPtrI<YLog::Logger> mpLogger = YLog::GetLogger("Kernel", YSynch::LOCK_STACK_CATEGORY_OBJECT);
};

TEST_F(LoggerWithoutMemory, DoesNotListenToADispatcherThatItCannotAdd) {
  mpLogger->Dispatchers().ObtainCookie("Error");
  const auto dispatcher = New<CountingDispatcher>(YLog::CreateDispatcher("Info"));
  YLog::SetConfigurationHook(
      New<ConfigurableHook>([&](auto& configured, auto&) { configured = dispatcher; }).Get());
  for (unsigned long successes = 0; !Adds(successes); ++successes) {
    EXPECT_EQ(dispatcher->mRegistrations, dispatcher->mUnregistrations) << successes;
    EXPECT_FALSE(mpLogger->Dispatchers().GetDispatcher(0xDAFE)) << successes;
  }
  EXPECT_GT(dispatcher->mUnregistrations, 0) << "the list never needed memory";
  EXPECT_EQ(dispatcher->mRegistrations, dispatcher->mUnregistrations + 1);
  EXPECT_EQ(dispatcher, mpLogger->Dispatchers().GetDispatcher(0xDAFE));
}

}  // namespace

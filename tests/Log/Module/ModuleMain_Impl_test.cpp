#include "Module/ModuleMain_Impl.h"

#include <functional>
#include <memory>

#include <YBase/Message.h>
#include <YLog/ThreadSpecificLogHeaders.h>
#include <YSynch/ThreadSpecificLogHeaders.h>

namespace {

using YLog::ModuleMain_Impl;

/// Whether a function is registered for this call. A registered one looks for a started library, and throws,
/// because the modules of these tests are not the module of the process.
bool LooksForTheLibrary(const std::function<void()>& call) {
  try {
    call();
    return false;
  } catch (const YBase::Message&) {
    return true;
  }
}

/// How many of the three functions are registered.
int CountRegistrations() {
  YLog::ThreadSpecificLogHeaders headers;
  return int{LooksForTheLibrary([] { EXPECT_EQ(nullptr, YSynch::GetThreadSpecificLogHeaders()); })} +
         int{LooksForTheLibrary([&] { YSynch::SetThreadSpecificLogHeaders(&headers); })} +
         int{LooksForTheLibrary([] { YSynch::UnsetThreadSpecificLogHeaders(); })};
}

TEST(ModuleMainImpl, UnregistersItsFunctionsWhenItStops) {
  const auto module = std::make_unique<ModuleMain_Impl>();
  EXPECT_EQ(3, CountRegistrations());
  module->Stop();
  EXPECT_EQ(0, CountRegistrations());
}

TEST(ModuleMainImpl, DestructionAfterTheNextModuleHasStartedLeavesThatRegistered) {
  auto previous = std::make_unique<ModuleMain_Impl>();
  previous->Stop();
  const auto next = std::make_unique<ModuleMain_Impl>();
  previous = nullptr;
  EXPECT_EQ(3, CountRegistrations());
  next->Stop();
}

}  // namespace

#include "Module/ModuleMain_Impl.h"

#include <memory>

#include <YBase/Message.h>
#include <YSynch/ThreadSpecificLogHeaders.h>

namespace {

using YLog::ModuleMain_Impl;

/// What is registered looks for a started library, in vain here: these modules are not that of the process.
bool IsRegistered() {
  try {
    EXPECT_EQ(nullptr, YSynch::GetThreadSpecificLogHeaders());
    return false;
  } catch (const YBase::Message&) {
    return true;
  }
}

TEST(ModuleMainImpl, WithdrawsFromTheProcessWhenItStops) {
  const auto module = std::make_unique<ModuleMain_Impl>();
  EXPECT_TRUE(IsRegistered());
  module->Stop();
  EXPECT_FALSE(IsRegistered());
}

TEST(ModuleMainImpl, DestroyedAfterTheNextOneHasStartedLeavesThatAlone) {
  auto former = std::make_unique<ModuleMain_Impl>();
  former->Stop();
  const auto next = std::make_unique<ModuleMain_Impl>();
  former = nullptr;
  EXPECT_TRUE(IsRegistered());
  next->Stop();
}

}  // namespace

#include <YLog/Initializer.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <YLog/YLog.h>
#include <YSynch/ReferenceCountedImpl.h>
#include <YSynch/ThreadSpecificLogHeaders.h>

namespace {

/// Counts the references to itself.
class CountedHook final : public YLog::ConfigurationHook,
                          public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  void AddRef() const override {
    ++mReferences;
    ReferenceCountedImpl::AddRef();
  }
  void Release() const override {
    --mReferences;
    ReferenceCountedImpl::Release();
  }
  void ConfigureLogger(YLog::Logger&) override {}
  void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>&, YLog::Logger&) override {}

  mutable std::atomic<int> mReferences{0};
};

constexpr auto CATEGORY = YSynch::LOCK_STACK_CATEGORY_OBJECT;

const YLog::Initializer sBeforeMain;
const YBase::SmartPtrI<YLog::Logger> sLoggerBeforeMain = YLog::GetLogger("before main", CATEGORY);

TEST(Initializer, MayBeAStaticObject) {
  EXPECT_STREQ(sLoggerBeforeMain->GetName(), "before main");
}

TEST(Initializer, KeepsTheModuleUntilTheLastOneIsDestroyed) {
  YLog::SetServerInstanceName(L"kept");
  { const YLog::Initializer second; }
  EXPECT_EQ(YLog::GetServerInstanceName(), L"kept");
}

TEST(ConfigurationHook, IsHeldOnceHoweverOftenItIsSet) {
  const YBase::SmartPtrI<CountedHook> hook(new CountedHook);
  YLog::SetConfigurationHook(hook.Get());
  EXPECT_EQ(hook->mReferences, 2);
  YLog::SetConfigurationHook(hook.Get());
  EXPECT_EQ(hook->mReferences, 2);
  EXPECT_EQ(YLog::GetConfigurationHook(), hook);
  YLog::SetConfigurationHook(nullptr);
  EXPECT_EQ(hook->mReferences, 1);
  EXPECT_EQ(YLog::GetConfigurationHook(), nullptr);
}

TEST(ServerInstanceName, IsEmptyUntilItIsSetAndMayBeAnyText) {
  EXPECT_EQ(YLog::GetServerInstanceName(), L"");
  YLog::SetServerInstanceName(L"Z\u00FCrich 1");
  EXPECT_EQ(YLog::GetServerInstanceName(), L"Z\u00FCrich 1");
  YLog::SetServerInstanceName(nullptr);
  EXPECT_EQ(YLog::GetServerInstanceName(), L"");
}

TEST(ThreadHeaders, AreTransferredThroughTheSynchronisationLibrary) {
  YLog::SetUserIDToThreadContext(L"U1");
  const auto headers = YSynch::GetThreadSpecificLogHeaders();
  std::jthread([&] {
    EXPECT_EQ(YLog::GetThreadSpecificLogHeaders()->userID, "");
    YSynch::SetThreadSpecificLogHeaders(headers.get());
    EXPECT_EQ(YLog::GetThreadSpecificLogHeaders()->userID, "U1");
    YSynch::SetThreadSpecificLogHeaders(nullptr);
    EXPECT_EQ(YLog::GetThreadSpecificLogHeaders()->userID, "U1");
    YSynch::UnsetThreadSpecificLogHeaders();
    EXPECT_EQ(YLog::GetThreadSpecificLogHeaders()->userID, "");
  }).join();
}

}  // namespace

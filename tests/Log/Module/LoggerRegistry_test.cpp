#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/YLog.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto CATEGORY = YSynch::LOCK_STACK_CATEGORY_OBJECT;

/// Records the names of the loggers and dispatchers it is called for, and throws for one logger.
class RecordingHook final : public YLog::ConfigurationHook,
                            public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  void ConfigureLogger(YLog::Logger& logger) override {
    if (mThrowAt == logger.GetName()) throw std::runtime_error("refused");
    mSeen.push_back(logger.GetName());
  }
  void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>& dispatcher, YLog::Logger& logger) override {
    mSeen.push_back(std::string(logger.GetName()) + "/" + dispatcher->GetName());
  }

  std::vector<std::string> mSeen;
  std::string mThrowAt = "none";
};

class LoggerRegistry : public testing::Test {
 protected:
  LoggerRegistry() { YLog::SetConfigurationHook(mpHook.Get()); }

  const YLog::Initializer mInitializer;
  const YBase::SmartPtrI<RecordingHook> mpHook{new RecordingHook};
};

TEST_F(LoggerRegistry, ReturnsTheSameLoggerForTheSameName) {
  EXPECT_EQ(YLog::GetLogger("A", CATEGORY), YLog::GetLogger("A", CATEGORY));
}

TEST_F(LoggerRegistry, DistinguishesNamesByCase) {
  EXPECT_NE(YLog::GetLogger("A", CATEGORY), YLog::GetLogger("a", CATEGORY));
}

TEST_F(LoggerRegistry, AcceptsTheEmptyName) {
  EXPECT_STREQ(YLog::GetLogger("", CATEGORY)->GetName(), "");
  EXPECT_EQ(YLog::GetLogger("", CATEGORY), YLog::GetLogger("", CATEGORY));
}

TEST_F(LoggerRegistry, RefusesNullForAName) {
  EXPECT_DEBUG_DEATH(YLog::GetLogger(nullptr, CATEGORY), "name != nullptr");
}

TEST_F(LoggerRegistry, PassesANewLoggerToTheHookOnce) {
  YLog::GetLogger("A", CATEGORY);
  YLog::GetLogger("A", CATEGORY);
  EXPECT_THAT(mpHook->mSeen, ElementsAre("A"));
}

TEST_F(LoggerRegistry, RegistersNothingWhenTheHookThrows) {
  mpHook->mThrowAt = "A";
  EXPECT_THROW(YLog::GetLogger("A", CATEGORY), std::runtime_error);
  mpHook->mThrowAt = "none";
  YLog::GetLogger("A", CATEGORY);
  EXPECT_THAT(mpHook->mSeen, ElementsAre("A"));
}

TEST_F(LoggerRegistry, RefreshesEachLoggerWithItsDispatchersInTheOrderOfNames) {
  for (const char* name : {"b", "B", "a"}) YLog::GetLogger(name, CATEGORY)->Dispatchers().ObtainCookie("D");
  mpHook->mSeen.clear();
  YLog::RefreshConfiguration();
  EXPECT_THAT(mpHook->mSeen, ElementsAre("B", "B/D", "a", "a/D", "b", "b/D"));
}

TEST_F(LoggerRegistry, EndsARefreshAtTheLoggerForWhichTheHookThrows) {
  for (const char* name : {"A", "B", "C"}) YLog::GetLogger(name, CATEGORY);
  mpHook->mSeen.clear();
  mpHook->mThrowAt = "B";
  EXPECT_THROW(YLog::RefreshConfiguration(), std::runtime_error);
  EXPECT_THAT(mpHook->mSeen, ElementsAre("A"));
}

TEST_F(LoggerRegistry, RefreshesNothingWithoutLoggersOrWithoutAHook) {
  YLog::RefreshConfiguration();
  EXPECT_THAT(mpHook->mSeen, IsEmpty());
  YLog::SetConfigurationHook(nullptr);
  YLog::RefreshConfiguration();
  YLog::GetLogger("A", CATEGORY);
  YLog::RefreshConfiguration();
  EXPECT_THAT(mpHook->mSeen, IsEmpty());
}

TEST_F(LoggerRegistry, ReturnsTheSameLoggerToThreadsThatAskAtOnce) {
  YLog::SetConfigurationHook(nullptr);
  std::vector<YBase::SmartPtrI<YLog::Logger>> loggers(8);
  {
    std::vector<std::jthread> threads;
    for (auto& logger : loggers) threads.emplace_back([&] { logger = YLog::GetLogger("A", CATEGORY); });
  }
  for (const auto& logger : loggers) EXPECT_EQ(logger, loggers.front());
}

TEST_F(LoggerRegistry, LetsTheHookRequestLoggers) {
  class AskingHook final : public YLog::ConfigurationHook,
                           public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
   public:
    void ConfigureLogger(YLog::Logger& logger) override {
      if (std::string(logger.GetName()) == "outer") YLog::GetLogger("inner", CATEGORY);
    }
    void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>&, YLog::Logger&) override {}
  };
  const YBase::SmartPtrI<AskingHook> hook(new AskingHook);
  YLog::SetConfigurationHook(hook.Get());
  EXPECT_STREQ(YLog::GetLogger("outer", CATEGORY)->GetName(), "outer");
}

}  // namespace

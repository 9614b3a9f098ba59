#include <YSynch/ThreadSpecificLogHeaders.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// This library knows the struct by its name only, so here it may look like anything.
struct YLog::ThreadSpecificLogHeaders {
  int mark = 0;
};

namespace {

using Headers = YLog::ThreadSpecificLogHeaders;
using testing::ElementsAre;

class ThreadSpecificLogHeaders : public testing::Test {
 protected:
  ~ThreadSpecificLogHeaders() override {
    YSynch::DeregisterThreadSpecificLogHeadersGetter();
    YSynch::DeregisterThreadSpecificLogHeadersSetter();
    YSynch::DeregisterThreadSpecificLogHeadersUnsetter();
  }

  std::vector<std::string> mCalls;
};

std::shared_ptr<Headers> Marked(int mark) {
  return std::make_shared<Headers>(Headers{mark});
}

TEST_F(ThreadSpecificLogHeaders, DoNothingWhereNothingIsRegistered) {
  Headers headers;
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders(), nullptr);
  YSynch::SetThreadSpecificLogHeaders(&headers);
  YSynch::SetThreadSpecificLogHeaders(nullptr);
  YSynch::UnsetThreadSpecificLogHeaders();
  YSynch::DeregisterThreadSpecificLogHeadersGetter();
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders(), nullptr);
}

TEST_F(ThreadSpecificLogHeaders, GoThroughWhatIsRegistered) {
  Headers headers{7};
  YSynch::RegisterThreadSpecificLogHeadersGetter([] { return Marked(5); });
  YSynch::RegisterThreadSpecificLogHeadersSetter(
      [this](Headers* given) { mCalls.push_back(given != nullptr ? std::to_string(given->mark) : "null"); });
  YSynch::RegisterThreadSpecificLogHeadersUnsetter([this] { mCalls.emplace_back("unset"); });

  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders()->mark, 5);
  YSynch::SetThreadSpecificLogHeaders(&headers);
  YSynch::SetThreadSpecificLogHeaders(nullptr);
  YSynch::UnsetThreadSpecificLogHeaders();
  EXPECT_THAT(mCalls, ElementsAre("7", "null", "unset"));
}

TEST_F(ThreadSpecificLogHeaders, GoThroughTheLatestRegistration) {
  YSynch::RegisterThreadSpecificLogHeadersGetter([] { return Marked(1); });
  YSynch::RegisterThreadSpecificLogHeadersGetter([] { return Marked(2); });
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders()->mark, 2);
}

TEST_F(ThreadSpecificLogHeaders, DoNothingAfterTheDeregistration) {
  YSynch::RegisterThreadSpecificLogHeadersGetter([] { return Marked(1); });
  YSynch::RegisterThreadSpecificLogHeadersSetter([this](Headers*) { mCalls.emplace_back("set"); });
  YSynch::RegisterThreadSpecificLogHeadersUnsetter([this] { mCalls.emplace_back("unset"); });
  YSynch::DeregisterThreadSpecificLogHeadersSetter();
  YSynch::DeregisterThreadSpecificLogHeadersGetter();
  YSynch::DeregisterThreadSpecificLogHeadersUnsetter();

  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders(), nullptr);
  YSynch::SetThreadSpecificLogHeaders(nullptr);
  YSynch::UnsetThreadSpecificLogHeaders();
  EXPECT_THAT(mCalls, ElementsAre());
}

TEST_F(ThreadSpecificLogHeaders, TakeAnEmptyFunctionForNone) {
  YSynch::RegisterThreadSpecificLogHeadersUnsetter([this] { mCalls.emplace_back("unset"); });
  YSynch::RegisterThreadSpecificLogHeadersUnsetter(nullptr);
  YSynch::RegisterThreadSpecificLogHeadersGetter({});
  YSynch::UnsetThreadSpecificLogHeaders();
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders(), nullptr);
  EXPECT_THAT(mCalls, ElementsAre());
}

TEST_F(ThreadSpecificLogHeaders, FunctionThatReplacesItselfLivesUntilItReturns) {
  const auto second = [] { return Marked(2); };
  YSynch::RegisterThreadSpecificLogHeadersGetter([second, own = Marked(1)] {
    YSynch::RegisterThreadSpecificLogHeadersGetter(second);
    return own;
  });
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders()->mark, 1);
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders()->mark, 2);
}

TEST_F(ThreadSpecificLogHeaders, FunctionIsCalledWithNoLockHeld) {
  YSynch::RegisterThreadSpecificLogHeadersUnsetter([this] {
    // Another thread, because the one that holds a lock could take it again.
    std::thread([this] {
      YSynch::RegisterThreadSpecificLogHeadersUnsetter([this] { mCalls.emplace_back("second"); });
    }).join();
    mCalls.emplace_back("first");
  });
  YSynch::UnsetThreadSpecificLogHeaders();
  YSynch::UnsetThreadSpecificLogHeaders();
  EXPECT_THAT(mCalls, ElementsAre("first", "second"));
}

}  // namespace

#include <YSynch/ThreadSpecificLogHeaders.h>

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// This library only declares the struct, so the test may define it as it likes.
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

  static inline std::vector<std::string> sCalls;
};

std::shared_ptr<Headers> Marked(int mark) {
  return std::make_shared<Headers>(Headers{mark});
}

TEST_F(ThreadSpecificLogHeaders, DoNothingIfNothingIsRegistered) {
  Headers headers;
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders(), nullptr);
  YSynch::SetThreadSpecificLogHeaders(&headers);
  YSynch::SetThreadSpecificLogHeaders(nullptr);
  YSynch::UnsetThreadSpecificLogHeaders();
  YSynch::DeregisterThreadSpecificLogHeadersGetter();
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders(), nullptr);
}

TEST_F(ThreadSpecificLogHeaders, UseTheRegisteredFunctions) {
  Headers headers{7};
  YSynch::RegisterThreadSpecificLogHeadersGetter([] { return Marked(5); });
  YSynch::RegisterThreadSpecificLogHeadersSetter(
      [](Headers* given) { sCalls.push_back(given != nullptr ? std::to_string(given->mark) : "null"); });
  YSynch::RegisterThreadSpecificLogHeadersUnsetter([] { sCalls.emplace_back("unset"); });

  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders()->mark, 5);
  YSynch::SetThreadSpecificLogHeaders(&headers);
  YSynch::SetThreadSpecificLogHeaders(nullptr);
  YSynch::UnsetThreadSpecificLogHeaders();
  EXPECT_THAT(sCalls, ElementsAre("7", "null", "unset"));
}

TEST_F(ThreadSpecificLogHeaders, UseTheLatestRegistration) {
  YSynch::RegisterThreadSpecificLogHeadersGetter([] { return Marked(1); });
  YSynch::RegisterThreadSpecificLogHeadersGetter([] { return Marked(2); });
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders()->mark, 2);
}

TEST_F(ThreadSpecificLogHeaders, DoNothingAfterTheDeregistration) {
  YSynch::RegisterThreadSpecificLogHeadersGetter([] { return Marked(1); });
  YSynch::RegisterThreadSpecificLogHeadersSetter([](Headers*) { sCalls.emplace_back("set"); });
  YSynch::RegisterThreadSpecificLogHeadersUnsetter([] { sCalls.emplace_back("unset"); });
  YSynch::DeregisterThreadSpecificLogHeadersSetter();
  YSynch::DeregisterThreadSpecificLogHeadersGetter();
  YSynch::DeregisterThreadSpecificLogHeadersUnsetter();

  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders(), nullptr);
  YSynch::SetThreadSpecificLogHeaders(nullptr);
  YSynch::UnsetThreadSpecificLogHeaders();
  EXPECT_THAT(sCalls, ElementsAre());
}

TEST_F(ThreadSpecificLogHeaders, TreatNullAsNone) {
  YSynch::RegisterThreadSpecificLogHeadersUnsetter([] { sCalls.emplace_back("unset"); });
  YSynch::RegisterThreadSpecificLogHeadersUnsetter(nullptr);
  YSynch::RegisterThreadSpecificLogHeadersGetter(nullptr);
  YSynch::UnsetThreadSpecificLogHeaders();
  EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders(), nullptr);
  EXPECT_THAT(sCalls, ElementsAre());
}

}  // namespace

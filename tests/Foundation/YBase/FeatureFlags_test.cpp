#include <YBase/ExceptionImpl.h>
#include <YBase/FeatureFlags.h>
#include <YBase/Message.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

std::wstring Name(int number) {
  return L"feature " + std::to_wstring(number);
}

TEST(FeatureFlags, AreOffUntilTheHostSwitchesThemOn) {
  EXPECT_FALSE(YBase::IsFeatureEnabled(L"KS/SLMS"));
  YBase::SetFeatureEnabled(L"KS/SLMS", true);
  EXPECT_TRUE(YBase::IsFeatureEnabled(L"KS/SLMS"));
  YBase::SetFeatureEnabled(L"KS/SLMS", false);
  EXPECT_FALSE(YBase::IsFeatureEnabled(L"KS/SLMS"));
}

TEST(FeatureFlags, AreDistinguishedByTheirExactName) {
  YBase::SetFeatureEnabled(L"KS/SLMS", true);
  for (const wchar_t* other : {L"ks/slms", L"KS/SLM", L"KS/SLMS ", L""}) {
    EXPECT_FALSE(YBase::IsFeatureEnabled(other)) << other;
  }
}

TEST(FeatureFlags, KeepACopyOfTheName) {
  std::wstring name = L"short-lived";
  YBase::SetFeatureEnabled(name.c_str(), true);
  name.assign(name.size(), L'x');
  EXPECT_TRUE(YBase::IsFeatureEnabled(L"short-lived"));
}

TEST(FeatureFlags, RefuseANullName) {
  EXPECT_THROW(YBase::IsFeatureEnabled(nullptr), YBase::ExceptionImpl<YBase::Message>);
  EXPECT_THROW(YBase::SetFeatureEnabled(nullptr, true), YBase::ExceptionImpl<YBase::Message>);
}

TEST(FeatureFlags, AreNotLostWhenThreadsSetThemConcurrently) {
  constexpr int THREADS = 4;
  constexpr int FEATURES = 200;
  std::atomic<int> ready{0};
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < THREADS; ++thread) {
      threads.emplace_back([&] {
        for (++ready; ready < THREADS;) std::this_thread::yield();
        for (int number = 0; number < FEATURES; ++number)
          YBase::SetFeatureEnabled(Name(number).c_str(), true);
      });
    }
  }
  for (int number = 0; number < FEATURES; ++number) {
    EXPECT_TRUE(YBase::IsFeatureEnabled(Name(number).c_str())) << number;
  }
}

}  // namespace

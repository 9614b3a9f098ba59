#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <YLog/YLog.h>
#include <YSynch/ThreadSpecificLogHeaders.h>

#include "support/ConfigurableHook.h"
#include "support/ForkedThread.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::ConfigurableHook;
using Support::Destinations;
using Support::New;
using Support::RecordingDestination;
using testing::ElementsAre;

constexpr auto CATEGORY = YSynch::LOCK_STACK_CATEGORY_OBJECT;

/// A library that holds a client's hook and destination, both of which run client code in their destructors
/// when the last `Initializer` is destroyed.
class Stop : public testing::Test {
 protected:
  using Action = std::function<void()>;

  void StartAndStop(const Action& onDestructionOfDestination, const Action& onDestructionOfHook) {
    const YLog::Initializer initializer;
    YLog::SetConfigurationHook(New<ConfigurableHook>(nullptr, nullptr, onDestructionOfHook).Get());
    YLog::CreateRouter("Kernel", "Error", CATEGORY)
        ->GetDispatcher()
        ->SetDestinations(Destinations({New<RecordingDestination>(nullptr, onDestructionOfDestination)}));
    YLog::SetUserIDToThreadContext(L"first");
    YLog::SetServerInstanceName(L"first");
  }
  /// Both objects run the same action in their destructors.
  void StartAndStop(const Action& onDestruction) { StartAndStop(onDestruction, onDestruction); }

  int mDestroyed = 0;
};

TEST_F(Stop, ReleasesLoggersBeforeTheHook) {
  std::vector<std::string> released;
  StartAndStop([&] { released.emplace_back("destination"); }, [&] { released.emplace_back("hook"); });
  EXPECT_THAT(released, ElementsAre("destination", "hook"));
}

TEST_F(Stop, ClientCodeFindsTheLibraryStopped) {
  StartAndStop([&] {
    ++mDestroyed;
    EXPECT_THROW(YLog::GetServerInstanceName(), YBase::Message);
    EXPECT_EQ(nullptr, YSynch::GetThreadSpecificLogHeaders());
  });
  EXPECT_EQ(2, mDestroyed);
}

TEST_F(Stop, ClientCodeMayStartTheLibraryAgain) {
  StartAndStop([&] {
    const YLog::Initializer again;
    EXPECT_EQ(L"", YLog::GetServerInstanceName());
    EXPECT_EQ("", YLog::GetThreadSpecificLogHeaders()->userID);
    EXPECT_STREQ("Kernel", YLog::GetLogger("Kernel", CATEGORY)->GetName());
    ++mDestroyed;
  });
  EXPECT_EQ(2, mDestroyed);
}

TEST_F(Stop, AnotherThreadMayStartTheLibraryAgainWhileClientCodeRuns) {
  StartAndStop([&] {
    std::jthread([&] {
      const YLog::Initializer again;
      ++mDestroyed;
    }).join();
  });
  EXPECT_EQ(2, mDestroyed);
}

TEST_F(Stop, ClientCodeMayFork) {
  StartAndStop([&] {
    ++mDestroyed;
    EXPECT_TRUE(Support::SucceedsInChild([] {
      const YLog::Initializer again;
      return YLog::GetServerInstanceName().empty();
    }));
  });
  EXPECT_EQ(2, mDestroyed);
}

TEST_F(Stop, LeavesALibraryAloneThatClientCodeHasStartedMeanwhile) {
  std::optional<YLog::Initializer> again;
  StartAndStop(
      [&] {
        again.emplace();
        YLog::SetServerInstanceName(L"second");
        YLog::SetUserIDToThreadContext(L"second");
        YLog::GetLogger("Kernel", CATEGORY)->Dispatchers().ObtainCookie("Info");
      },
      [&] { ++mDestroyed; });
  EXPECT_EQ(1, mDestroyed);
  EXPECT_EQ(L"second", YLog::GetServerInstanceName());
  EXPECT_EQ("second", YSynch::GetThreadSpecificLogHeaders()->userID);
  EXPECT_STREQ("Info", YLog::GetLogger("Kernel", CATEGORY)->Dispatchers().GetDispatcher(0xDAFF)->GetName());
  EXPECT_NE(nullptr, YLog::MsgLogTrace::getInstance());
}

}  // namespace

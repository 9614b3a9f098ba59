#include <YLog/ScopeGuard.h>

#include <pthread.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <YLog/YLog.h>

#include "support/CancelledThread.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;
using Support::New;
using Support::Record;
using Support::RecordingDestination;
using testing::ElementsAre;
using testing::IsEmpty;
using YBase::SmartPtrI;

static_assert(!std::is_copy_constructible_v<YLog::ScopeGuard>);
static_assert(!std::is_copy_assignable_v<YLog::ScopeGuard>);

class ScopeGuard : public testing::Test {
 protected:
  ScopeGuard() { Enable(); }

  void Enable() const { mpRouter->GetDispatcher()->SetDestinations(Destinations({mpDestination})); }
  void Disable() const { mpRouter->GetDispatcher()->SetDestinations(Destinations()); }
  void MakeDestinationThrow(auto exception) const {
    mpRouter->GetDispatcher()->SetDestinations(Destinations(
        {mpDestination, New<RecordingDestination>([=](auto, const auto&) { throw exception; })}));
  }
  std::vector<std::string> Texts() const { return mpDestination->Texts(); }

  const YLog::Initializer mInitializer;
  const SmartPtrI<YLog::Router> mpRouter =
      YLog::CreateRouter("Kernel", "Trace", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const SmartPtrI<RecordingDestination> mpDestination = New<RecordingDestination>();
};

TEST_F(ScopeGuard, LogsWhenItsScopeIsEnteredAndLeft) {
  {
    const YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42);
    EXPECT_THAT(Texts(), ElementsAre("Enter 'Run' near job(42)"));
  }
  EXPECT_THAT(Texts(), ElementsAre("Enter 'Run' near job(42)", "Leave 'Run' near job(42)"));
}

TEST_F(ScopeGuard, LogsTheReturnCodeAndTheLineThatReturnedIt) {
  {
    YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42);
    guard.SetReturnCode(5, 57);
    EXPECT_EQ(1U, Texts().size()) << "setting the code must not log";
  }
  EXPECT_EQ("Leave 'Run' near job(57) with 0x00000005", Texts().at(1));
}

TEST_F(ScopeGuard, LogsTheLastReturnCodeBeItZeroOrTheLargest) {
  {
    YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42);
    guard.SetReturnCode(5, 57);
    guard.SetReturnCode(std::numeric_limits<unsigned long>::max(), 65535);
  }
  { YLog::ScopeGuard(*mpRouter, "Run", "job", 42).SetReturnCode(0, 58); }
  EXPECT_EQ("Leave 'Run' near job(65535) with 0xFFFFFFFFFFFFFFFF", Texts().at(1));
  EXPECT_EQ("Leave 'Run' near job(58) with 0x00000000", Texts().at(3));
}

TEST_F(ScopeGuard, RecordsHaveNoIdAndNoSourcePosition) {
  { const YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42); }
  for (const Record& record : mpDestination->Records()) {
    EXPECT_EQ(0U, record.messageID);
    EXPECT_EQ("", record.fileName);
    EXPECT_EQ("", record.funcName);
    EXPECT_EQ(0, record.lineNumber);
  }
  EXPECT_EQ(2U, Texts().size());
}

TEST_F(ScopeGuard, ShowsARemarkInsteadOfAWideName) {
  { const YLog::ScopeGuard guard(*mpRouter, L"Run", "job", 42); }
  { const YLog::ScopeGuard guard(*mpRouter, static_cast<const wchar_t*>(nullptr), "job", 43); }
  EXPECT_THAT(Texts(), ElementsAre("Enter '[use char* as function name to see it]' near job(42)",
                                   "Leave '[use char* as function name to see it]' near job(42)",
                                   "Enter '[use char* as function name to see it]' near job(43)",
                                   "Leave '[use char* as function name to see it]' near job(43)"));
}

TEST_F(ScopeGuard, LogsNothingWithoutAFunctionName) {
  {
    YLog::ScopeGuard guard(*mpRouter, static_cast<const char*>(nullptr), "job", 42);
    guard.SetReturnCode(5, 57);
  }
  EXPECT_THAT(Texts(), IsEmpty());
}

TEST_F(ScopeGuard, TreatsANullFileNameAsEmpty) {
  { const YLog::ScopeGuard guard(*mpRouter, "Run", nullptr, 42); }
  EXPECT_THAT(Texts(), ElementsAre("Enter 'Run' near (42)", "Leave 'Run' near (42)"));
}

TEST_F(ScopeGuard, DoesNotReplacePlaceholdersInNames) {
  { const YLog::ScopeGuard guard(*mpRouter, "operator%2", "100%%", 42); }
  EXPECT_EQ("Enter 'operator%2' near 100%%(42)", Texts().at(0));
}

TEST_F(ScopeGuard, LogsNothingAtTheEndIfDisabledAtTheBeginning) {
  Disable();
  {
    const YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42);
    Enable();
  }
  EXPECT_THAT(Texts(), IsEmpty());
}

TEST_F(ScopeGuard, OmitsTheSecondRecordIfDisabledAtTheEnd) {
  {
    const YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42);
    Disable();
  }
  Enable();
  EXPECT_THAT(Texts(), ElementsAre("Enter 'Run' near job(42)"));
}

TEST_F(ScopeGuard, ChecksOnlyTheRoutersFlag) {
  mpRouter->mEnabled = false;
  { const YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42); }
  EXPECT_THAT(Texts(), IsEmpty());
}

TEST_F(ScopeGuard, ChecksTheRoutersFlagAgainAtTheEnd) {
  {
    const YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42);
    mpRouter->mEnabled = false;
  }
  EXPECT_THAT(Texts(), ElementsAre("Enter 'Run' near job(42)"));
}

TEST_F(ScopeGuard, HoldsItsRouterUntilTheEnd) {
  auto router = YLog::CreateRouter("Kernel", "Trace", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  {
    const YLog::ScopeGuard guard(*router, "Run", "job", 42);
    router = nullptr;
  }
  EXPECT_EQ(2U, Texts().size());
}

TEST_F(ScopeGuard, HidesExceptionsOfDestinationsFromTheTracedCode) {
  MakeDestinationThrow(std::runtime_error("full"));
  { const YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42); }
  EXPECT_EQ(2U, Texts().size()) << "the second record must follow though the first one failed";
  MakeDestinationThrow(4711);
  { const YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42); }
  EXPECT_EQ(4U, Texts().size());
}

TEST_F(ScopeGuard, LogsTheEndWhileAnExceptionPropagates) {
  MakeDestinationThrow(std::runtime_error("full"));
  const auto run = [&] {
    const YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42);
    throw std::logic_error("the client's own");
  };
  EXPECT_THROW(run(), std::logic_error);
  EXPECT_THAT(Texts(), ElementsAre("Enter 'Run' near job(42)", "Leave 'Run' near job(42)"));
}

TEST_F(ScopeGuard, LogsTheBeginningAndTheEndOfABlockWhoseThreadIsCancelled) {
  mpRouter->GetDispatcher()->SetDestinations(Destinations(
      {New<RecordingDestination>([](auto, const auto&) { pthread_cancel(pthread_self()); }),
       New<RecordingDestination>([](auto, const auto&) { pthread_testcancel(); }), mpDestination}));
  EXPECT_TRUE(Support::IsCancelled([this] {
    const YLog::ScopeGuard guard(*mpRouter, "Run", "job", 42);
    pthread_testcancel();
  }));
  EXPECT_THAT(Texts(), ElementsAre("Enter 'Run' near job(42)", "Leave 'Run' near job(42)"));
}

}  // namespace

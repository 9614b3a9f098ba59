#include <string>

#include <YLog/YLog.h>

#include "support/AllocationCounter.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::AllocationFailure;
using Support::Destinations;
using Support::GetAllocationCount;
using Support::New;
using Support::RecordingDestination;

class ScopeGuardWithoutMemory : public testing::Test {
 protected:
  ScopeGuardWithoutMemory() { mpRouter->GetDispatcher()->SetDestinations(Destinations({mpDestination})); }

  const YLog::Initializer mInitializer;
  const YBase::SmartPtrI<YLog::Router> mpRouter =
      YLog::CreateRouter("Kernel", "Trace", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const YBase::SmartPtrI<RecordingDestination> mpDestination = New<RecordingDestination>();
  // Too long for a formatter's own storage, so inserting it allocates memory.
  const std::string mLongName = std::string(10'000, 'f');
};

TEST_F(ScopeGuardWithoutMemory, OmitsTheRecordWhoseFormattingFails) {
  {
    const AllocationFailure failure(0);
    const unsigned long before = GetAllocationCount();
    const YLog::ScopeGuard guard(*mpRouter, mLongName.c_str(), "job", 42);
    EXPECT_EQ(before + 1, GetAllocationCount()) << "the first allocation must fail";
  }
  EXPECT_EQ(1U, mpDestination->Records().size()) << "memory is available again at the end of the scope";
}

TEST_F(ScopeGuardWithoutMemory, SurvivesAFailureAtAnyAllocation) {
  std::size_t records = 0;
  for (unsigned long successes = 0; records != 2; ++successes) {
    ASSERT_LT(successes, 100U);
    const std::size_t before = mpDestination->Records().size();
    {
      const AllocationFailure failure(successes);
      const YLog::ScopeGuard guard(*mpRouter, mLongName.c_str(), "job", 42);
    }
    records = mpDestination->Records().size() - before;
    EXPECT_TRUE(successes > 0 || records == 1) << "failing the first allocation had no effect";
  }
}

TEST_F(ScopeGuardWithoutMemory, AllocatesNothingWhileTheRouterIsDisabled) {
  mpRouter->GetDispatcher()->SetDestinations(Destinations());
  const unsigned long before = GetAllocationCount();
  { const YLog::ScopeGuard guard(*mpRouter, mLongName.c_str(), "job", 42); }
  EXPECT_EQ(before, GetAllocationCount());
}

}  // namespace

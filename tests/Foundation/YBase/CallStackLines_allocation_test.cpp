#include <new>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallStackText.h"
#include "NewProcess.h"
#include "support/AllocationCounter.h"

namespace {

using Support::AllocationFailure;
using Support::GetAllocationCount;

TEST(CallStackLines, AreStillReadAfterMemoryRanOut) {
  RunInNewProcess([] {
    for (unsigned long successes = 0; successes != 100; ++successes) {
      const AllocationFailure failure(successes);
      try {
        YBase::CreateCallStack();
      } catch (const std::bad_alloc&) {
        continue;
      }
      ASSERT_GT(successes, 2u);
      break;
    }
    const std::vector<std::string> frames = GetShownFrames(YBase::CreateCallStack());
    EXPECT_THAT(frames.at(0), testing::HasSubstr("CallStackLines_allocation_test.cpp:"));
  });
}

TEST(CallStackLines, CostFewAllocationsOnceTheyAreKnown) {
  constexpr auto take = [] {
    const unsigned long before = GetAllocationCount();
    YBase::CreateCallStack();
    return GetAllocationCount() - before;
  };
  std::vector<unsigned long> counts;
  for (int i = 0; i != 3; ++i) counts.push_back(take());
  EXPECT_GT(counts[0], counts[1]);
  EXPECT_EQ(counts[1], counts[2]);
  EXPECT_LT(counts[1], 12u);
}

}  // namespace

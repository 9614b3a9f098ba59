#include <new>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallStackText.h"
#include "support/AllocationCounter.h"

namespace {

using Support::AllocationFailure;
using Support::GetAllocationCount;

/// Takes a stack while the given allocation fails; true if that happened.
bool RunsOutOfMemory(unsigned long failingAllocation) {
  const AllocationFailure failure(failingAllocation);
  try {
    YBase::CreateCallStack();
    return false;
  } catch (const std::bad_alloc&) {
    return true;
  }
}

TEST(CallStack, WorksAgainAfterMemoryRanOutAtAnyPointOfTheFirst) {
  unsigned long failures = 0;
  while (RunsOutOfMemory(failures)) ++failures;
  EXPECT_GT(failures, 2u);
  const std::vector<std::string> frames = GetShownFrames(YBase::CreateCallStack());
  EXPECT_THAT(frames.at(0), testing::HasSubstr("WorksAgainAfterMemoryRanOutAtAnyPointOfTheFirst"));
}

TEST(CallStack, AllocatesItselfOnlyWhenAllIsKnown) {
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

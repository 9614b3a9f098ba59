#include <new>

#include <gtest/gtest.h>

#include <YBase/CallStack.h>

#include "support/AllocationCounter.h"

namespace {

using Support::AllocationFailure;

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

TEST(CallStack, WorksAfterMemoryRanOutAnywhereInTheFirstStack) {
  unsigned long failures = 0;
  while (RunsOutOfMemory(failures)) ++failures;
  EXPECT_GT(failures, 2u);
  EXPECT_GT(YBase::CreateCallStack().GetFrameCount(), 6u);
}

}  // namespace

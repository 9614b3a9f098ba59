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

}  // namespace

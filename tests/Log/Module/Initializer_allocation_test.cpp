#include <YLog/Initializer.h>

#include <new>

#include <YLog/YLog.h>
#include <YSynch/ThreadSpecificLogHeaders.h>

#include "support/AllocationCounter.h"

namespace {

/// Whether the library starts if `successes` allocations succeed and the next one fails.
bool StartsWith(unsigned long successes) {
  const Support::AllocationFailure failure(successes);
  try {
    const YLog::Initializer initializer;
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

TEST(InitializerWithoutMemory, LeavesNothingRegisteredWhenItThrows) {
  unsigned long successes = 0;
  while (!StartsWith(successes)) {
    EXPECT_EQ(YSynch::GetThreadSpecificLogHeaders(), nullptr) << successes;
    EXPECT_THROW(YLog::MsgLogTrace::getInstance(), YBase::Message) << successes;
    ++successes;
  }
  EXPECT_GT(successes, 5U);
  const YLog::Initializer initializer;
  EXPECT_STREQ(YLog::GetLogger("L", YSynch::LOCK_STACK_CATEGORY_OBJECT)->GetName(), "L");
}

}  // namespace

#include <YBase/FeatureFlags.h>

#include "support/AllocationCounter.h"

namespace {

TEST(FeatureFlagsAllocations, QueryingAFlagMakesNone) {
  YBase::SetFeatureEnabled(L"a name that is too long to be kept without one", true);
  const unsigned long before = Support::GetAllocationCount();
  EXPECT_TRUE(YBase::IsFeatureEnabled(L"a name that is too long to be kept without one"));
  EXPECT_FALSE(YBase::IsFeatureEnabled(L"another name that is too long to be kept without one"));
  EXPECT_EQ(Support::GetAllocationCount(), before);
}

}  // namespace

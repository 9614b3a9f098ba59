#include <YLog/Router.h>

#include <vector>

#include <YLog/YLog.h>

#include "support/AllocationCounter.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;

YBase::SmartPtrI<YLog::Router> Create() {
  return YLog::CreateRouter("Kernel", "Error", YSynch::LOCK_STACK_CATEGORY_OBJECT);
}

/// A change allocates memory for each router that is notified of it.
unsigned long CountAllocationsOfAChange(YLog::Dispatcher& dispatcher) {
  const unsigned long before = Support::GetAllocationCount();
  dispatcher.SetDestinations(Destinations());
  return Support::GetAllocationCount() - before;
}

TEST(RouterCount, ChangeCostsNothingForDestroyedRouters) {
  const YLog::Initializer initializer;
  const auto router = Create();
  const unsigned long atFirst = CountAllocationsOfAChange(*router->GetDispatcher());
  std::vector<YBase::SmartPtrI<YLog::Router>> others;
  for (int count = 0; count < 10; ++count) others.push_back(Create());
  EXPECT_GE(CountAllocationsOfAChange(*router->GetDispatcher()), atFirst + 10);
  others.clear();
  EXPECT_EQ(CountAllocationsOfAChange(*router->GetDispatcher()), atFirst);
}

}  // namespace

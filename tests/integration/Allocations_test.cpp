#include <gtest/gtest.h>

#include "support/AllocationCounter.h"
#include "support/DiskFileClient.h"
#include "support/TemporaryDirectory.h"

namespace {

constexpr int RECORDS = 1000;

class Allocations : public testing::Test {
 protected:
  /// The number of allocations that `RECORDS` calls of `log` make after a few calls that are not counted.
  static unsigned long CountedOver(auto&& log) {
    for (int warmUp = 0; warmUp < 10; ++warmUp) log();
    const unsigned long before = Support::GetAllocationCount();
    for (int record = 0; record < RECORDS; ++record) log();
    return Support::GetAllocationCount() - before;
  }

  const Support::TemporaryDirectory mDirectory;
  Support::DiskFileClient mClient{mDirectory.Path() / "a.log"};
};

TEST_F(Allocations, AreCounted) {
  EXPECT_EQ(CountedOver([] { operator delete(operator new(1)); }), static_cast<unsigned long>(RECORDS));
}

TEST_F(Allocations, AreNotMadeForATextOnDisk) {
  EXPECT_EQ(CountedOver([this] { mClient.Log("a text of some length, with two\nlines in it"); }), 0U);
}

TEST_F(Allocations, AreNotMadeForAFormattedTextOnDisk) {
  EXPECT_EQ(CountedOver([this] {
              YLog::LogMessage(mClient.Router(), "Order %1 of %2 took %3 ms",
                               YLog::GetMessageFormatter() << 4711 << "a customer with a name" << 12.5);
            }),
            0U);
}

TEST_F(Allocations, AreNotMadeForADisabledStatement) {
  const YBase::SmartPtrI<YLog::Router> router =
      YLog::CreateRouter("Test", "Disabled", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  router->mEnabled = false;
  EXPECT_EQ(CountedOver([&] { YLog::LogString(*router, "not formatted"); }), 0U);
}

}  // namespace

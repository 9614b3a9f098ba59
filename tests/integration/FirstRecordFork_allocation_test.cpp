#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "support/DiskFileClient.h"
#include "support/ForkDuringAllocation.h"
#include "support/TemporaryDirectory.h"

namespace {

/// A process that has started the library but has never logged.
class FirstRecord : public testing::Test {
 protected:
  /// Forks during each allocation of the first record, in a new process each time, until a child fails.
  /// Returns the number of allocations.
  template <class Log>
  static unsigned long ForksAtEachAllocationOf(Log log) {
    for (unsigned long allocation = 0;; ++allocation) {
      const Support::ForkOutcome outcome = Support::ForkDuringAllocation(allocation, [&log] {
        log();
        return true;
      });
      if (outcome == Support::ALLOCATION_NOT_REACHED) return allocation;
      EXPECT_EQ(outcome, Support::CHILD_SUCCEEDED) << "forked during allocation " << allocation;
      if (outcome != Support::CHILD_SUCCEEDED) return allocation;
    }
  }

  const Support::TemporaryDirectory mDirectory;
  Support::DiskFileClient mClient{mDirectory.Path() / "a.log"};
};

TEST_F(FirstRecord, HangsNoChildForkedDuringAnyOfItsAllocations) {
  EXPECT_GT(ForksAtEachAllocationOf([this] { mClient.Log("text"); }), 5U);
}

TEST_F(FirstRecord, OfAFormattedTextHangsNoChildForkedDuringAnyOfItsAllocations) {
  EXPECT_GT(ForksAtEachAllocationOf([this] {
              YLog::LogMessage(mClient.Router(), 300, YLog::GetMessageFormatter() << 4711, "Order %1");
            }),
            5U);
}

TEST_F(FirstRecord, OfAStructuredMessageHangsNoChildForkedDuringAnyOfItsAllocations) {
  YBase::Message message("outer");
  message.AddLowerLevelMessage(YBase::Message("inner"));
  mClient.File().SetLanguageID(0x0407);
  EXPECT_GT(ForksAtEachAllocationOf([&] { mClient.Router().LogMessage(message); }), 5U);
}

}  // namespace

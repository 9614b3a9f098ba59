#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "support/DiskFileClient.h"
#include "support/ForkDuringAllocation.h"
#include "support/TemporaryDirectory.h"

namespace {

/// A process that has started the library, and never logged.
class FirstRecord : public testing::Test {
 protected:
  /// Forks at each allocation of the first record, each time in a process of its own, until the child of one
  /// fails. Returns how many there were.
  template <class Log>
  static unsigned long ForksAtEachAllocationOf(Log log) {
    for (unsigned long allocation = 0;; ++allocation) {
      const Support::ForkOutcome outcome = Support::ForkDuringAllocation(allocation, [&log] {
        log();
        return true;
      });
      if (outcome == Support::ALLOCATION_NOT_REACHED) return allocation;
      EXPECT_EQ(outcome, Support::CHILD_SUCCEEDED) << "forked in allocation " << allocation;
      if (outcome != Support::CHILD_SUCCEEDED) return allocation;
    }
  }

  const Support::TemporaryDirectory mDirectory;
  Support::DiskFileClient mClient{mDirectory.Path() / "a.log"};
};

TEST_F(FirstRecord, HangsNoChildThatIsForkedInAnyAllocationOfIt) {
  EXPECT_GT(ForksAtEachAllocationOf([this] { mClient.Log("text"); }), 5U);
}

TEST_F(FirstRecord, OfAFormattedTextHangsNoChildThatIsForkedInAnyAllocationOfIt) {
  EXPECT_GT(ForksAtEachAllocationOf([this] {
              YLog::LogMessage(mClient.Router(), 300, YLog::GetMessageFormatter() << 4711, "Order %1");
            }),
            5U);
}

TEST_F(FirstRecord, OfAStructuredMessageHangsNoChildThatIsForkedInAnyAllocationOfIt) {
  YBase::Message message("outer");
  message.AddLowerLevelMessage(YBase::Message("inner"));
  mClient.File().SetLanguageID(0x0407);
  EXPECT_GT(ForksAtEachAllocationOf([&] { mClient.Router().LogMessage(message); }), 5U);
}

}  // namespace

#include <YBase/ConstMessageCursor.h>
#include <YBase/Message.h>

#include "support/ForkDuringAllocation.h"

namespace {

bool ShowsNothing() {
  const YBase::Message childless;
  YBase::ConstMessageCursor cursor(childless);
  return cursor.GoToLowerLevelMessage(true) && cursor.GetCurrentMessage().GetLocalizedText(0) == nullptr;
}

TEST(MessageCursorFork, HangsNoChildThatIsForkedWhileAThreadMeetsTheFirstMissingMessage) {
  unsigned long allocation = 0;
  Support::ForkOutcome outcome = Support::CHILD_SUCCEEDED;
  for (; outcome == Support::CHILD_SUCCEEDED; ++allocation) {
    outcome = Support::ForkDuringAllocation(allocation, ShowsNothing);
  }
  EXPECT_EQ(outcome, Support::ALLOCATION_NOT_REACHED) << "allocation " << allocation - 1;
  EXPECT_GE(allocation, 3U);
}

}  // namespace

#include <new>

#include <YLog/Initializer.h>
#include <YLog/ThreadContext.h>

#include "Core/MessageUnderWay.h"
#include "ModuleMain.h"
#include "support/AllocationCounter.h"

namespace {

using Support::AllocationFailure;
using YLog::MessageUnderWay;

TEST(MessageUnderWayWithoutMemory, ThreadsHeaderIsFreeAgainAfterANestedMessageFailed) {
  const YLog::Initializer initializer;
  const YLog::MessageHeader* const headerOfThread =
      YLog::gModuleMainPtr->GetThreadContext()->GetMessageHeader();
  {
    const MessageUnderWay outer;
    const AllocationFailure failure(0);
    EXPECT_THROW(MessageUnderWay(), std::bad_alloc);
  }
  const MessageUnderWay next;
  EXPECT_EQ(headerOfThread, &next.GetHeader());
}

}  // namespace

#include "MessageModel/MessageHeader_Impl.h"

#include <string>

#include "support/AllocationCounter.h"
#include "support/New.h"

namespace {

using Support::AllocationFailure;
using Support::GetAllocationCount;
using Support::New;
using YLog::MessageHeader_Impl;

void Fill(MessageHeader_Impl& header, const std::string& name) {
  header.SetLoggerName(name.c_str());
  header.SetDispatcherName("Error");
  header.SetFileName("/src/main.cpp");
  header.SetFuncName(name.c_str());
  header.SetMessageID(300);
}

TEST(MessageHeaderImpl, LineIsCompleteAtTheNextCallAfterMemoryRanOut) {
  const std::string name(300, 'x');
  const auto whole = New<MessageHeader_Impl>();
  Fill(*whole, name);
  const std::string expected = whole->ToString();

  for (unsigned long successes = 0;; ++successes) {
    const auto header = New<MessageHeader_Impl>();
    Fill(*header, name);
    bool failed = false;
    try {
      const AllocationFailure failure(successes);
      header->ToString();
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    EXPECT_EQ(expected, header->ToString());
    if (!failed) {
      EXPECT_GT(successes, 2U) << "there were too few allocations to fail";
      break;
    }
  }
}

TEST(MessageHeaderImpl, ParsingLeavesTheHeaderUnchangedIfMemoryRunsOut) {
  const auto source = New<MessageHeader_Impl>();
  Fill(*source, std::string(300, 'x'));
  const std::string line = source->ToString();

  const auto header = New<MessageHeader_Impl>();
  const std::string before = header->ToString();
  unsigned long failures = 0;
  for (unsigned count = 0; count == 0; ++failures) {
    try {
      const AllocationFailure failure(failures);
      count = header->FromString(line.c_str());
    } catch (const std::bad_alloc&) {
      ASSERT_EQ(before, header->ToString());
      ASSERT_STREQ("", header->GetLoggerName());
    }
  }
  EXPECT_GT(failures, 3U);
  EXPECT_STREQ(source->GetLoggerName(), header->GetLoggerName());
}

TEST(MessageHeaderImpl, ChangesAndPrintsWithoutAllocatingOnceItsTextsHaveStorage) {
  const auto header = New<MessageHeader_Impl>();
  const std::string name(100, 'x');
  std::size_t length = 0;
  unsigned long allocations = 0;
  for (unsigned message = 0; message <= 1000; ++message) {
    if (message == 1) allocations = GetAllocationCount();
    header->SetTimestampToNowLocal();
    Fill(*header, name);
    length += std::char_traits<char>::length(header->ToString());
  }
  EXPECT_EQ(allocations, GetAllocationCount());
  EXPECT_GT(length, 200'000U);
}

}  // namespace

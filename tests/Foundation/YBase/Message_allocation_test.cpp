#include <YBase/Message.h>

#include <new>
#include <string>

#include "support/AllocationCounter.h"

namespace {

using Support::AllocationFailure;
using YBase::Message;

TEST(Message, KeepsItsTextsWhenMemoryRunsOut) {
  const std::string longText(100, 'x');
  Message message(longText.c_str());
  unsigned long failures = 0;
  for (;; ++failures) {
    const AllocationFailure failure(failures);
    try {
      message.SetLocalizedText(0x0407, longText.c_str());
      break;
    } catch (const std::bad_alloc&) {
      ASSERT_EQ(message.GetLocalizedText(0x0407), nullptr);
    }
  }
  EXPECT_GE(failures, 2u) << "a text and its place in the map";
  EXPECT_EQ(message.GetLocalizedText(0x0407), longText);
}

TEST(Message, AssignsAllOrNothingWhenMemoryRunsOut) {
  Message source("source");
  for (const char* text : {"a", "b", "c", "d"}) source.AddLowerLevelMessage(Message(text));
  Message target("target");
  target.AddLowerLevelMessage(Message("old"));
  unsigned long failures = 0;
  for (;; ++failures) {
    const AllocationFailure failure(failures);
    try {
      target = source;
      break;
    } catch (const std::bad_alloc&) {
      ASSERT_EQ(target.GetMessage(), L"target\n  old");
    }
  }
  EXPECT_GE(failures, 5u) << "five messages";
  EXPECT_EQ(target.GetMessage(), source.GetMessage());
}

}  // namespace

#include "Core/MessageUnderWay.h"

#include <utility>

#include <YBase/Message.h>
#include <YLog/Dispatcher.h>
#include <YLog/Initializer.h>
#include <YLog/Logger.h>
#include <YLog/ThreadContext.h>

#include "ModuleMain.h"

namespace {

using YLog::MessageUnderWay;

class MessageUnderWayTest : public testing::Test {
 protected:
  static YLog::MessageHeader& GetHeaderOfThread() {
    return *YLog::gModuleMainPtr->GetThreadContext()->GetMessageHeader();
  }
  static YLog::MessageBody& GetBodyOfThread() {
    return *YLog::gModuleMainPtr->GetThreadContext()->GetMessageBody();
  }

  const YLog::Initializer mInitializer;
};

TEST_F(MessageUnderWayTest, UsesTheHeaderOfTheThread) {
  for (int message = 0; message < 2; ++message) {
    const MessageUnderWay outer;
    EXPECT_EQ(&GetHeaderOfThread(), &outer.GetHeader());
  }
}

TEST_F(MessageUnderWayTest, HasItsOwnHeaderIfTheThreadsIsInUse) {
  const MessageUnderWay outer;
  const MessageUnderWay inner;
  EXPECT_NE(&GetHeaderOfThread(), &inner.GetHeader());
}

TEST_F(MessageUnderWayTest, UsesTheBodyOfTheThread) {
  for (int message = 0; message < 2; ++message) {
    MessageUnderWay outer;
    EXPECT_EQ(&GetBodyOfThread(), &outer.GetBody());
    EXPECT_EQ(&GetBodyOfThread(), &outer.GetBody());
  }
}

TEST_F(MessageUnderWayTest, HasItsOwnBodyIfTheThreadsIsInUse) {
  const MessageUnderWay outer;
  MessageUnderWay inner;
  EXPECT_NE(&GetBodyOfThread(), &inner.GetBody());
  EXPECT_EQ(&inner.GetBody(), &inner.GetBody());
}

TEST_F(MessageUnderWayTest, DisabledDispatcherLeavesTheThreadsHeaderAlone) {
  GetHeaderOfThread().SetLoggerName("untouched");
  GetHeaderOfThread().SetMessageID(7);
  const auto logger = YLog::GetLogger("Kernel", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const auto dispatcher = YLog::CreateDispatcher("Error");
  dispatcher->LogMessage(*logger, "text", 300, "main.cpp", "Run", 42);
  YBase::Message message("structured");
  dispatcher->LogMessage(*logger, message);
  dispatcher->LogMessage(*logger, std::as_const(message));
  EXPECT_STREQ("untouched", GetHeaderOfThread().GetLoggerName());
  EXPECT_STREQ("", GetHeaderOfThread().GetDispatcherName());
  EXPECT_EQ(7U, GetHeaderOfThread().GetMessageID());
  EXPECT_EQ(nullptr, GetBodyOfThread().GetMessage().GetLocalizedText(0));
  EXPECT_EQ("1970-01-01 00:00:00.000", GetHeaderOfThread().GetTimestamp().ToISO8601String());
}

}  // namespace

#include <unistd.h>

#include <atomic>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/YLog.h>

#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;
using Support::New;
using Support::RecordingDestination;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using YBase::SmartPtrI;

class MessageTextJson : public testing::Test {
 protected:
  MessageTextJson() { YLog::SetServerInstanceName(L"Inst1"); }

  std::string Get(const char* text = "text", unsigned messageID = 300) const {
    std::string json = "what was there before";
    mRouter->GetMessageTextJSON(text, messageID, "main.cpp", "Run", 42, json);
    return json;
  }

  const YLog::Initializer mInitializer;
  const SmartPtrI<YLog::Router> mRouter =
      YLog::CreateRouter("Kernel", "Error", YSynch::LOCK_STACK_CATEGORY_OBJECT);
};

TEST_F(MessageTextJson, IsTheHeaderOfTheMessage) {
  YLog::SetUserIDToThreadContext(L"U1");
  char name[256] = {};
  ASSERT_EQ(gethostname(name, sizeof name), 0);
  const std::string host = name;
  const std::string processID = std::to_string(getpid());
  const std::string threadID = std::to_string(gettid());
  EXPECT_THAT(
      Get(), AllOf(StartsWith("{\"dispatcher\":\"Error\",\"host\":\"" + host +
                              "\",\"logger\":\"Kernel\",\"message_id\":\"0x0000012C\",\"pid\":\"" +
                              processID + "\",\"server\":\"Inst1\",\"thr\":\"" + threadID + "\",\"time\":\""),
                   EndsWith("\",\"uid\":\"U1\"}\n")));
}

TEST_F(MessageTextJson, IsBuiltWithoutADestination) {
  ASSERT_FALSE(mRouter->mEnabled);
  EXPECT_THAT(Get(), StartsWith("{\"dispatcher\":\"Error\""));
}

TEST_F(MessageTextJson, LogsNothing) {
  const auto destination = New<RecordingDestination>();
  mRouter->GetDispatcher()->SetDestinations(Destinations({destination}));
  Get();
  EXPECT_THAT(destination->Texts(), IsEmpty());
}

TEST_F(MessageTextJson, DoesNotContainTheText) {
  EXPECT_THAT(Get("never to be seen"), Not(HasSubstr("seen")));
  EXPECT_THAT(Get(nullptr), StartsWith("{\"dispatcher\":\"Error\""));
}

TEST_F(MessageTextJson, IsRebuiltForEachMessage) {
  EXPECT_THAT(Get("text", 1), HasSubstr("\"0x00000001\""));
  YLog::SetUserIDToThreadContext(L"U2");
  EXPECT_THAT(Get("text", 1), HasSubstr("\"uid\":\"U2\""));
  EXPECT_THAT(Get("text", 0), Not(HasSubstr("message_id")));
}

TEST_F(MessageTextJson, IsTheSameFromLoggerAndDispatcher) {
  YLog::Logger& logger = *mRouter->GetLogger();
  std::string fromLogger;
  logger.GetMessageTextJSON(logger.Dispatchers().ObtainCookie("Error"), "text", 7, nullptr, nullptr, 0,
                            fromLogger);
  EXPECT_THAT(fromLogger, AllOf(StartsWith("{\"dispatcher\":\"Error\""), HasSubstr("\"0x00000007\"")));
  std::string fromDispatcher;
  mRouter->GetDispatcher()->GetMessageTextJSON(logger, "text", 7, nullptr, nullptr, 0, fromDispatcher);
  EXPECT_THAT(fromDispatcher, AllOf(StartsWith("{\"dispatcher\":\"Error\""), HasSubstr("\"0x00000007\"")));
}

TEST_F(MessageTextJson, StaysUnchangedForACookieThatTheLoggerDidNotIssue) {
  std::string json = "as it was";
  mRouter->GetLogger()->GetMessageTextJSON(0x1234, "text", 7, nullptr, nullptr, 0, json);
  EXPECT_EQ(json, "as it was");
}

TEST_F(MessageTextJson, DoesNotChangeTheHeaderOfAMessageBeingLogged) {
  std::string json;
  std::string lineAfter;
  const auto destination = New<RecordingDestination>([&](const char*, const YLog::MessageHeader& header) {
    json = Get("text", 300);
    lineAfter = header.ToString();
  });
  mRouter->GetDispatcher()->SetDestinations(Destinations({destination}));
  mRouter->LogMessage("outer", 5, nullptr, nullptr, 0);
  EXPECT_THAT(json, HasSubstr("\"0x0000012C\""));
  EXPECT_EQ(lineAfter, destination->Records().at(0).line);
}

}  // namespace

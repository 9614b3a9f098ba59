#include <YLog/Destination.h>

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/YLog.h>

#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using YBase::SmartPtrI;

const std::string BEGINNING = "\n--------- callstack ---------\n";
const std::string END = "\n-----------------------------";
constexpr unsigned ID = 300;

/// The records of messages with this ID show the call stack.
class CallStackText : public testing::Test {
 protected:
  CallStackText() {
    mHeader->SetMessageID(ID);
    mFile->SetCallstackMessageIDs(&ID, 1);
  }

  void Log(const char* text = "text") const { mFile->LogMessage(text, *mHeader); }
  std::wstring Path(const std::string& name) const { return (mDirectory.Path() / name).wstring(); }
  /// The content of the file after its first line.
  std::string Content(const std::string& name = "a.log") const {
    const std::string content = Support::ReadFile(mDirectory.Path() / name);
    return content.substr(content.find('\n') + 1);
  }
  std::string LineOf(const std::string& text) const { return mHeader->ToString() + (" " + text); }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
  const SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
  const SmartPtrI<YLog::Destination_DiskFile> mFile = YLog::GetDestination_DiskFile(Path("a.log").c_str());
};

TEST_F(CallStackText, FollowsTheMessageBetweenTwoSeparators) {
  Log("one\ntwo\n");
  EXPECT_THAT(Content(), StartsWith(LineOf("one\ntwo") + BEGINNING));
  EXPECT_THAT(Content(), EndsWith(END + "\n"));
}

TEST_F(CallStackText, HasOneFramePerLineBeginningWithTheCaller) {
  mFile->LogMessage("text", *mHeader);
  const std::string content = Content();
  const std::string firstFrame = content.substr(content.find(BEGINNING) + BEGINNING.size());
  // By its name, or by its place if the name cannot be read.
  EXPECT_THAT(firstFrame,
              AnyOf(StartsWith("(anonymous namespace)::CallStackText"), StartsWith("log_tests+0x")));
  EXPECT_THAT(content, Not(HasSubstr("\n\n")));
}

TEST_F(CallStackText, IsNotShownForOtherMessages) {
  mHeader->SetMessageID(ID + 1);
  Log();
  EXPECT_EQ(LineOf("text\n"), Content());
}

TEST_F(CallStackText, IsNotShownForMessagesWithoutAnIdEvenIfIdZeroIsSet) {
  constexpr unsigned NONE = 0;
  mFile->SetCallstackMessageIDs(&NONE, 1);
  mHeader->SetMessageID(0);
  Log();
  EXPECT_EQ(LineOf("text\n"), Content());
}

TEST_F(CallStackText, IsNoLongerShownOnceTheIdsAreCleared) {
  mFile->SetCallstackMessageIDs(nullptr, 0);
  Log();
  EXPECT_EQ(LineOf("text\n"), Content());
}

TEST_F(CallStackText, IsTheWholeRecordOfAMessageOfLineBreaks) {
  Log("\n\r\n");
  EXPECT_THAT(Content(), StartsWith(BEGINNING));
  EXPECT_THAT(Content(), EndsWith(END + "\n"));
}

TEST_F(CallStackText, IsShownForStructuredMessages) {
  const auto body = YLog::CreateMessageBody();
  body->SetMessage(YBase::Message("structured"));
  mFile->LogMessage(*mHeader, *body);
  EXPECT_THAT(Content(), StartsWith(LineOf("structured") + BEGINNING));
}

TEST_F(CallStackText, IsShownOnlyByTheDestinationWithTheIds) {
  const auto other = YLog::GetDestination_DiskFile(Path("b.log").c_str());
  other->LogMessage("text", *mHeader);
  EXPECT_EQ(LineOf("text\n"), Content("b.log"));
}

TEST_F(CallStackText, IsShownOnStandardError) {
  const auto output = YLog::GetDestination_DebugOutput();
  output->SetCallstackMessageIDs(&ID, 1);
  testing::internal::CaptureStderr();
  output->LogMessage("text", *mHeader);
  const std::string written = testing::internal::GetCapturedStderr();
  EXPECT_THAT(written, StartsWith(LineOf("text") + BEGINNING));
  EXPECT_THAT(written, EndsWith(END + "\n"));
}

TEST_F(CallStackText, OfAKafkaLogFollowsTheIdsOfItsDiskFile) {
  const auto kafka = YLog::GetDestination_KafkaLog(Path("kafka.log").c_str());
  kafka->SetCallstackMessageIDs(&ID, 1);
  kafka->LogMessage("text", *mHeader);
  EXPECT_EQ(LineOf("text\n"), Content("kafka.log"));
  kafka->GetBackupDiskFileDestination()->SetCallstackMessageIDs(&ID, 1);
  kafka->LogMessage("text", *mHeader);
  EXPECT_THAT(Content("kafka.log"), EndsWith(END + "\n"));
}

}  // namespace

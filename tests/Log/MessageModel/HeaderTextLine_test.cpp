#include <functional>
#include <ostream>
#include <string>

#include <YLog/MessageHeader.h>

namespace {

using YBase::SmartPtrI;
using YLog::CreateMessageHeader;
using YLog::MessageHeader;

SmartPtrI<MessageHeader> CreateExample(const char* dispatcherName) {
  SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetTimestampISO8601String("2024-03-05 09:07:03.042+01:00");
  header->SetComputerName("web01");
  header->SetServerInstanceName("Inst1");
  header->SetProcessID(4711);
  header->SetThreadID(123145);
  header->SetLoggerName("Kernel");
  header->SetDispatcherName(dispatcherName);
  header->SetMessageID(300);
  header->SetFileName("/src/engine_main");
  header->SetFuncName("Run");
  header->SetLineNumber(42);
  return header;
}

TEST(HeaderTextLine, ShowsEveryGroupOnTheDispatcherError) {
  EXPECT_STREQ(
      "2024-03-05 09:07:03.042+01:00 [HOST:web01][SERVER:Inst1][PID:4711][THR:123145][Kernel][Error]"
      "[0x0000012C][UID:0][SID:0][OID:0][engine_main:Run at line:42]",
      CreateExample("Error")->ToString());
}

TEST(HeaderTextLine, EndsWithTheObjectIdOnOtherDispatchers) {
  EXPECT_STREQ(
      "2024-03-05 09:07:03.042+01:00 [HOST:web01][SERVER:Inst1][PID:4711][THR:123145][Kernel][Info]"
      "[0x0000012C][UID:0][SID:0][OID:0]",
      CreateExample("Info")->ToString());
}

TEST(HeaderTextLine, OfANewHeaderHasEmptyBracketsAndZeros) {
  EXPECT_STREQ("1970-01-01 00:00:00.000 [HOST:][SERVER:][PID:0][THR:0][][][UID:0][SID:0][OID:0]",
               CreateMessageHeader()->ToString());
}

TEST(HeaderTextLine, ShowsUserSessionAndObject) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetUserID("alice");
  header->SetSessionID("4711");
  header->SetObjectID("order 7");
  EXPECT_TRUE(std::string(header->ToString()).ends_with("[UID:alice][SID:4711][OID:order 7]"));
}

TEST(HeaderTextLine, HasNoSourcePositionForADispatcherOtherThanError) {
  for (const char* name : {"error", "ERROR", "Erro", "E", "Errors", "Error ", " Error", "Error\n", ""}) {
    const SmartPtrI<MessageHeader> header = CreateExample("Error");
    EXPECT_NE(header->SetDispatcherName(name), 0) << name;
    EXPECT_TRUE(std::string(header->ToString()).ends_with("[OID:0]")) << name;
  }
}

TEST(HeaderTextLine, HasASourcePositionOnceTheDispatcherIsError) {
  const SmartPtrI<MessageHeader> header = CreateExample("error");
  EXPECT_EQ(header->SetDispatcherName("Error"), 0);
  EXPECT_TRUE(std::string(header->ToString()).ends_with("[engine_main:Run at line:42]"));
}

TEST(HeaderTextLine, HasNoSourcePositionWithoutAFileOrAFunction) {
  for (const char* missing : {"", static_cast<const char*>(nullptr)}) {
    const SmartPtrI<MessageHeader> noFile = CreateExample("Error");
    noFile->SetFileName(missing);
    EXPECT_TRUE(std::string(noFile->ToString()).ends_with("[OID:0]"));
    const SmartPtrI<MessageHeader> noFunction = CreateExample("Error");
    noFunction->SetFuncName(missing);
    EXPECT_TRUE(std::string(noFunction->ToString()).ends_with("[OID:0]"));
  }
}

TEST(HeaderTextLine, HasABlankForEachLineBreakInAField) {
  using Setter = void (MessageHeader::*)(const char*);
  for (const Setter set :
       {&MessageHeader::SetComputerName, &MessageHeader::SetServerInstanceName, &MessageHeader::SetLoggerName,
        &MessageHeader::SetProcessIDDecimalString, &MessageHeader::SetThreadIDDecimalString,
        &MessageHeader::SetUserID, &MessageHeader::SetSessionID, &MessageHeader::SetObjectID,
        &MessageHeader::SetFileName, &MessageHeader::SetFuncName}) {
    const SmartPtrI<MessageHeader> header = CreateExample("Error");
    ((*header).*set)("\na\r\n\nb\r");
    const std::string line = header->ToString();
    EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos);
    EXPECT_NE(line.find(" a   b "), std::string::npos) << line;
  }
}

TEST(HeaderTextLine, HasABlankForEachLineBreakInTheDispatchersName) {
  EXPECT_NE(std::string(CreateExample("In\nfo")->ToString()).find("[Kernel][In fo]"), std::string::npos);
}

TEST(HeaderTextLine, LeavesTheFieldsThemselvesUnchanged) {
  const SmartPtrI<MessageHeader> header = CreateExample("Info");
  header->SetUserID("a\nb");
  header->ToString();
  EXPECT_STREQ(header->GetUserID(), "a\nb");
  EXPECT_NE(std::string(header->ToJsonString()).find("\"uid\":\"a\\nb\""), std::string::npos);
}

TEST(HeaderTextLine, ShowsTheLineNumberWithItsSign) {
  const std::pair<int, const char*> numbers[] = {{0, "line:0]"},
                                                 {-1, "line:-1]"},
                                                 {2147483647, "line:2147483647]"},
                                                 {-2147483647 - 1, "line:-2147483648]"}};
  for (const auto& [number, text] : numbers) {
    const SmartPtrI<MessageHeader> header = CreateExample("Error");
    header->SetLineNumber(number);
    EXPECT_TRUE(std::string(header->ToString()).ends_with(text)) << header->ToString();
  }
}

TEST(HeaderTextLine, IsNotRebuiltUntilItIsDiscarded) {
  const SmartPtrI<MessageHeader> header = CreateExample("Error");
  const char* line = header->ToString();
  EXPECT_EQ(line, header->ToString());
}

struct Change {
  const char* name;
  std::function<void(MessageHeader&)> apply;

  friend void PrintTo(const Change& change, std::ostream* out) { *out << change.name; }
};

class HeaderTextLineAfter : public testing::TestWithParam<Change> {};
class HeaderTextLineWithout : public testing::TestWithParam<Change> {};

TEST_P(HeaderTextLineAfter, ShowsTheNewValue) {
  const SmartPtrI<MessageHeader> header = CreateExample("Error");
  const std::string before = header->ToString();
  GetParam().apply(*header);
  EXPECT_NE(before, header->ToString());
}

INSTANTIATE_TEST_SUITE_P(
    SettersOfNumbers, HeaderTextLineAfter,
    testing::Values(Change{"ProcessID", [](auto& header) { header.SetProcessID(1); }},
                    Change{"ProcessIDHexString", [](auto& header) { header.SetProcessIDHexString("1"); }},
                    Change{"ThreadID", [](auto& header) { header.SetThreadID(1); }},
                    Change{"ThreadIDHexString", [](auto& header) { header.SetThreadIDHexString("1"); }},
                    Change{"Timestamp", [](auto& header) { header.SetTimestamp(YLog::Timestamp()); }},
                    Change{"TimestampToNowLocal", [](auto& header) { header.SetTimestampToNowLocal(); }},
                    Change{"MessageID", [](auto& header) { header.SetMessageID(0); }},
                    Change{"MessageIDHexString", [](auto& header) { header.SetMessageIDHexString("1"); }}),
    [](const auto& test) { return test.param.name; });

TEST_P(HeaderTextLineWithout, ShowsTheOldValueUntilANumberChanges) {
  const SmartPtrI<MessageHeader> header = CreateExample("Error");
  const std::string before = header->ToString();
  GetParam().apply(*header);
  EXPECT_EQ(before, header->ToString());
  header->SetMessageID(301);
  std::string expected = before;
  expected.replace(expected.find("12C]"), 4, "12D]");
  EXPECT_NE(expected, header->ToString()) << "the change must show once the line is rebuilt";
}

INSTANTIATE_TEST_SUITE_P(
    SettersOfTexts, HeaderTextLineWithout,
    testing::Values(
        Change{"ComputerName", [](auto& header) { header.SetComputerName("x"); }},
        Change{"ServerInstanceName", [](auto& header) { header.SetServerInstanceName("x"); }},
        Change{"ProcessIDDecimalString", [](auto& header) { header.SetProcessIDDecimalString("1"); }},
        Change{"ThreadIDDecimalString", [](auto& header) { header.SetThreadIDDecimalString("1"); }},
        Change{"TimestampISO8601String",
               [](auto& header) { header.SetTimestampISO8601String("2001-02-03 04:05:06.007"); }},
        Change{"LoggerName", [](auto& header) { header.SetLoggerName("x"); }},
        Change{"DispatcherName", [](auto& header) { header.SetDispatcherName("x"); }},
        Change{"FileName", [](auto& header) { header.SetFileName("x"); }},
        Change{"FuncName", [](auto& header) { header.SetFuncName("x"); }},
        Change{"LineNumber", [](auto& header) { header.SetLineNumber(1); }},
        Change{"UserID", [](auto& header) { header.SetUserID("x"); }},
        Change{"SessionID", [](auto& header) { header.SetSessionID("x"); }},
        Change{"ObjectID", [](auto& header) { header.SetObjectID("x"); }}),
    [](const auto& test) { return test.param.name; });

TEST(HeaderTextLine, IsNotRebuiltWhenANumberIsSetToItsCurrentValue) {
  const SmartPtrI<MessageHeader> header = CreateExample("Error");
  const std::string before = header->ToString();
  header->SetUserID("alice");
  header->SetProcessID(4711);
  header->SetThreadID(123145);
  header->SetMessageID(300);
  EXPECT_EQ(before, header->ToString());
}

}  // namespace

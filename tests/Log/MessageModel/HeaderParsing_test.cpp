#include <string>
#include <vector>

#include <YLog/MessageHeader.h>
#include <rapidcheck/gtest.h>

namespace {

using YBase::SmartPtrI;
using YLog::CreateMessageHeader;
using YLog::MessageHeader;

constexpr const char* TIME = "2024-03-05 09:07:03.042+01:00";
constexpr const char* ORIGIN = " [HOST:web01][SERVER:Inst1][PID:4711][THR:123145][Kernel][Error]";
constexpr const char* REST = "[0x0000012C][UID:alice][SID:s1][OID:o1][engine_main:Run at line:42]";

std::string Line(const std::string& rest = REST) {
  return std::string(TIME) + ORIGIN + rest;
}

unsigned Read(MessageHeader& header, const std::string& line) {
  return header.FromString(line.c_str());
}

TEST(HeaderParsing, ReadsEveryField) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  EXPECT_EQ(Line().size(), Read(*header, Line() + " The message"));
  EXPECT_STREQ(TIME, header->GetTimestampISO8601String());
  EXPECT_EQ(TIME, header->GetTimestamp().ToISO8601String());
  EXPECT_STREQ("web01", header->GetComputerName());
  EXPECT_EQ(4711U, header->GetProcessID());
  EXPECT_EQ(123145U, header->GetThreadID());
  EXPECT_STREQ("Kernel", header->GetLoggerName());
  EXPECT_STREQ("Error", header->GetDispatcherName());
  EXPECT_EQ(300U, header->GetMessageID());
  EXPECT_STREQ("alice", header->GetUserID());
  EXPECT_STREQ("s1", header->GetSessionID());
  EXPECT_STREQ("o1", header->GetObjectID());
  EXPECT_STREQ("engine_main", header->GetFileName());
  EXPECT_STREQ("Run", header->GetFuncName());
  EXPECT_EQ(42, header->GetLineNumber());
}

TEST(HeaderParsing, ReplacesTheFieldsOfTheHeaderAndTheirTextForms) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetProcessID(1);
  header->SetThreadID(2);
  header->SetMessageID(3);
  for (const char* built : {header->GetProcessIDHexString(), header->GetThreadIDHexString(),
                            header->GetMessageIDHexString(), header->ToString()}) {
    ASSERT_STRNE("", built);
  }
  ASSERT_NE(0U, Read(*header, Line()));
  EXPECT_STREQ("1267", header->GetProcessIDHexString());
  EXPECT_STREQ("1E109", header->GetThreadIDHexString());
  EXPECT_STREQ("0000012C", header->GetMessageIDHexString());
  EXPECT_NE(std::string::npos, std::string(header->ToString()).find("[PID:4711][THR:123145][Kernel]"));
}

TEST(HeaderParsing, ReadsNoServerInstanceName) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetServerInstanceName("Mine");
  ASSERT_NE(0U, Read(*header, Line()));
  EXPECT_STREQ("Mine", header->GetServerInstanceName());
}

TEST(HeaderParsing, DoesNotChangeWhetherTheHeaderShowsTheSourcePosition) {
  const SmartPtrI<MessageHeader> shows = CreateMessageHeader();
  shows->SetDispatcherName("Error");
  ASSERT_NE(0U, Read(*shows, std::string(TIME) + " [HOST:][SERVER:][PID:1][THR:1][][Info][f:g at line:1]"));
  EXPECT_STREQ("Info", shows->GetDispatcherName());
  EXPECT_TRUE(std::string(shows->ToString()).ends_with("[Info][UID:0][SID:0][OID:0][f:g at line:1]"));

  const SmartPtrI<MessageHeader> hides = CreateMessageHeader();
  ASSERT_NE(0U, Read(*hides, Line()));
  EXPECT_STREQ("Error", hides->GetDispatcherName());
  EXPECT_TRUE(std::string(hides->ToString()).ends_with("[OID:o1]"));
}

TEST(HeaderParsing, RefusesLinesThatDoNotBeginWithATimestampAndAHost) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  EXPECT_EQ(0U, Read(*header, ""));
  EXPECT_EQ(0U, Read(*header, " " + Line()));
  EXPECT_EQ(0U, Read(*header, ORIGIN));
  EXPECT_EQ(0U, Read(*header, std::string(TIME) + " " + ORIGIN));
  EXPECT_EQ(0U, Read(*header, std::string(TIME) + " [Host:web01][SERVER:][PID:1][THR:1][][]"));
  EXPECT_EQ(0U, Read(*header, "2024-03-05 09:07:03.042+15:00" + std::string(ORIGIN) + REST));
}

TEST(HeaderParsing, RefusesALineWithoutOneOfItsSeparators) {
  for (const char* separator : {" [HOST:", "][SERVER:", "][PID:", "][THR:"}) {
    std::string line = Line();
    line.replace(line.find(separator), std::string(separator).size(), "-");
    EXPECT_EQ(0U, Read(*CreateMessageHeader(), line)) << separator;
  }
  EXPECT_EQ(0U, Read(*CreateMessageHeader(), std::string(TIME) + " [HOST:][SERVER:][PID:1][THR:1][Kernel"));
}

TEST(HeaderParsing, FailureLeavesTheHeaderUnchanged) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  ASSERT_NE(0U, Read(*header, Line()));
  const std::string before = header->ToString();
  EXPECT_EQ(0U, Read(*header, "1999-01-01 00:00:00.000 [HOST:x][SERVER:y][PID:1][THR:2][l][d][0x1"));
  EXPECT_EQ(before, header->ToString());
  header->SetMessageID(1);
  header->SetMessageID(300);
  EXPECT_EQ(before, header->ToString());
}

TEST(HeaderParsing, ReadsIdsPrintedAsZeroAsTheTextZero) {
  const SmartPtrI<MessageHeader> source = CreateMessageHeader();
  const std::string line = source->ToString();
  ASSERT_TRUE(line.ends_with("[UID:0][SID:0][OID:0]"));
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  EXPECT_EQ(line.size(), Read(*header, line));
  EXPECT_STREQ("0", header->GetUserID());
  EXPECT_STREQ("0", header->GetSessionID());
  EXPECT_STREQ("0", header->GetObjectID());
}

TEST(HeaderParsing, MissingGroupsLeaveTheirFieldsEmpty) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetMessageID(7);
  header->SetUserID("before");
  header->SetFileName("before");
  EXPECT_EQ(Line("").size(), Read(*header, Line("")));
  EXPECT_EQ(0U, header->GetMessageID());
  EXPECT_STREQ("", header->GetUserID());
  EXPECT_STREQ("", header->GetFileName());
  EXPECT_EQ(Line("[SID:s]").size(), Read(*header, Line("[SID:s]")));
  EXPECT_STREQ("s", header->GetSessionID());
}

TEST(HeaderParsing, GroupsOutOfOrderBelongToTheMessage) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  EXPECT_EQ(Line("[SID:s]").size(), Read(*header, Line("[SID:s][UID:u]")));
  EXPECT_STREQ("", header->GetUserID());
  EXPECT_EQ(Line("[UID:u]").size(), Read(*header, Line("[UID:u][0x0000012C]")));
  EXPECT_EQ(0U, header->GetMessageID());
}

TEST(HeaderParsing, RefusesAnUnclosedGroup) {
  for (const char* group : {"[0x0000012C", "[UID:u", "[SID:s", "[OID:o", "[UID:u][SID:s"}) {
    EXPECT_EQ(0U, Read(*CreateMessageHeader(), Line(group))) << group;
  }
}

TEST(HeaderParsing, KeepsTheTextsOfUnusualNumbers) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  ASSERT_NE(0U, Read(*header, std::string(TIME) + " [HOST:][SERVER:][PID:007][THR:12a][][]"));
  EXPECT_EQ(7U, header->GetProcessID());
  EXPECT_STREQ("007", header->GetProcessIDDecimalString());
  EXPECT_EQ(12U, header->GetThreadID());
  EXPECT_STREQ("12a", header->GetThreadIDDecimalString());
}

TEST(HeaderParsing, SignExtendsANegativeThreadId) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetThreadID(1);
  ASSERT_NE(0U, Read(*header, std::string(TIME) + " [HOST:][SERVER:][PID:1][THR:-2][][]"));
  EXPECT_EQ(static_cast<unsigned long>(-2L), header->GetThreadID());
}

TEST(HeaderParsing, InvalidSourcePositionBelongsToTheMessage) {
  const std::string longFunction = "[f:" + std::string(128, 'g') + " at line:42]";
  for (const std::string& rest :
       {longFunction, std::string("[f:g at line:42"), std::string("[f:g at line:99999999999]"),
        std::string("[note] text"), std::string(" [f:g at line:42]")}) {
    const SmartPtrI<MessageHeader> header = CreateMessageHeader();
    EXPECT_EQ(Line("").size(), Read(*header, Line(rest))) << rest;
    EXPECT_STREQ("", header->GetFileName());
    EXPECT_STREQ("", header->GetFuncName());
    EXPECT_EQ(0, header->GetLineNumber());
  }
}

TEST(HeaderParsing, LineCutOffAnywhereYieldsNothingOrAWholeHeader) {
  const std::string line = Line();
  const std::size_t shortest = Line("").size();
  for (std::size_t length = 0; length < line.size(); ++length) {
    const unsigned count = Read(*CreateMessageHeader(), line.substr(0, length));
    if (count == 0) continue;
    EXPECT_GE(count, shortest) << length;
    EXPECT_LE(count, length);
    EXPECT_EQ(']', line[count - 1]);
  }
  EXPECT_EQ(shortest, Read(*CreateMessageHeader(), line.substr(0, shortest)));
}

TEST(HeaderParsing, ReadsFieldsOfTenThousandBytes) {
  const std::string name(10'000, '\xFE');
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  const std::string line = std::string(TIME) + " [HOST:" + name + "][SERVER:" + name + "][PID:" + name +
                           "][THR:1][" + name + "][" + name + "][UID:" + name + "]";
  EXPECT_EQ(line.size(), Read(*header, line));
  EXPECT_EQ(name, header->GetComputerName());
  EXPECT_EQ(name, header->GetProcessIDDecimalString());
  EXPECT_EQ(0U, header->GetProcessID());
  EXPECT_EQ(name, header->GetUserID());
}

TEST(HeaderParsing, MayReadTheHeadersOwnTextLine) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetLoggerName("Kernel");
  const std::string line = header->ToString();
  EXPECT_EQ(line.size(), header->FromString(header->ToString()));
  EXPECT_EQ(line, header->ToString());
}

/// Any bytes but those that would end the text or its group.
rc::Gen<std::string> FieldBytes() {
  return rc::gen::container<std::string>(
      rc::gen::suchThat(rc::gen::arbitrary<char>(), [](char c) { return c != '\0' && c != ']'; }));
}

RC_GTEST_PROP(HeaderParsing, ReadsBackEveryLineThatIsPrinted, ()) {
  const SmartPtrI<MessageHeader> source = CreateMessageHeader();
  source->SetComputerName((*FieldBytes()).c_str());
  source->SetProcessID(*rc::gen::inRange(0U, 0x80000000U));
  source->SetThreadID(*rc::gen::inRange(0U, 0x80000000U));
  source->SetLoggerName((*FieldBytes()).c_str());
  source->SetDispatcherName((*FieldBytes()).c_str());
  source->SetMessageID(*rc::gen::arbitrary<unsigned>());
  source->SetUserID((*FieldBytes()).c_str());
  source->SetSessionID((*FieldBytes()).c_str());
  source->SetObjectID((*FieldBytes()).c_str());
  const std::string line = source->ToString();

  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  RC_ASSERT(Read(*header, line + " [message]") == line.size());
  RC_ASSERT(header->ToString() == line);
  RC_ASSERT(header->GetMessageID() == source->GetMessageID());
  RC_ASSERT(header->GetThreadID() == source->GetThreadID());
}

RC_GTEST_PROP(HeaderParsing, SurvivesAnyText, ()) {
  const auto piece =
      rc::gen::element<std::string>(TIME, " [HOST:", "][SERVER:", "][PID:", "][THR:", "][", "]", "[0x",
                                    "[UID:", "[SID:", "[OID:", "[f:g at line:", "7", "\xFF");
  std::string text = *rc::gen::element<std::string>("", TIME, Line(""), Line());
  for (const std::string& part : *rc::gen::container<std::vector<std::string>>(piece)) text += part;
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  const unsigned count = Read(*header, text);
  RC_ASSERT(count <= text.size());
  RC_ASSERT((count == 0 || text[count - 1] == ']'));
}

}  // namespace

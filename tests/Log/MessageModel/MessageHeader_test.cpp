#include <YLog/MessageHeader.h>

#include <string>

namespace {

using YBase::SmartPtrI;
using YLog::CreateMessageHeader;
using YLog::MessageHeader;

TEST(MessageHeader, BeginsWithEmptyTextsAndZeros) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  for (const char* text :
       {header->GetComputerName(), header->GetServerInstanceName(), header->GetLoggerName(),
        header->GetDispatcherName(), header->GetFileName(), header->GetFuncName(), header->GetUserID(),
        header->GetSessionID(), header->GetObjectID()}) {
    EXPECT_STREQ("", text);
  }
  EXPECT_EQ(0U, header->GetProcessID());
  EXPECT_EQ(0U, header->GetThreadID());
  EXPECT_EQ(0U, header->GetMessageID());
  EXPECT_EQ(0, header->GetLineNumber());
}

TEST(MessageHeader, PrintsZerosInDecimalAndHex) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  EXPECT_STREQ("0", header->GetProcessIDDecimalString());
  EXPECT_STREQ("0", header->GetProcessIDHexString());
  EXPECT_STREQ("0", header->GetThreadIDDecimalString());
  EXPECT_STREQ("0", header->GetThreadIDHexString());
  EXPECT_STREQ("00000000", header->GetMessageIDHexString());
  EXPECT_STREQ("1970-01-01 00:00:00.000", header->GetTimestampISO8601String());
}

TEST(MessageHeader, ReturnsTheTextsThatWereSet) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetComputerName("web01");
  header->SetServerInstanceName("Inst1");
  header->SetLoggerName("Kernel");
  header->SetDispatcherName("Info");
  header->SetFileName("/src/main");
  header->SetFuncName("Run");
  header->SetLineNumber(-3);
  header->SetUserID("u");
  header->SetSessionID("s");
  header->SetObjectID("o");
  EXPECT_STREQ("web01", header->GetComputerName());
  EXPECT_STREQ("Inst1", header->GetServerInstanceName());
  EXPECT_STREQ("Kernel", header->GetLoggerName());
  EXPECT_STREQ("Info", header->GetDispatcherName());
  EXPECT_STREQ("/src/main", header->GetFileName());
  EXPECT_STREQ("Run", header->GetFuncName());
  EXPECT_EQ(-3, header->GetLineNumber());
  EXPECT_STREQ("u", header->GetUserID());
  EXPECT_STREQ("s", header->GetSessionID());
  EXPECT_STREQ("o", header->GetObjectID());
}

TEST(MessageHeader, TreatsNullAsTheEmptyTextWhereItIsAllowed) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  using Setter = void (MessageHeader::*)(const char*);
  using Getter = const char* (MessageHeader::*)() const;
  const std::pair<Setter, Getter> texts[] = {
      {&MessageHeader::SetServerInstanceName, &MessageHeader::GetServerInstanceName},
      {&MessageHeader::SetFileName, &MessageHeader::GetFileName},
      {&MessageHeader::SetFuncName, &MessageHeader::GetFuncName},
      {&MessageHeader::SetUserID, &MessageHeader::GetUserID},
      {&MessageHeader::SetSessionID, &MessageHeader::GetSessionID},
      {&MessageHeader::SetObjectID, &MessageHeader::GetObjectID},
  };
  for (const auto& [set, get] : texts) {
    (*header.*set)("text");
    ASSERT_STREQ("text", (*header.*get)());
    (*header.*set)(nullptr);
    EXPECT_STREQ("", (*header.*get)());
  }
}

TEST(MessageHeader, RefusesNullForOtherTexts) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  EXPECT_DEBUG_DEATH(header->SetComputerName(nullptr), "text != nullptr");
  EXPECT_DEBUG_DEATH(header->SetLoggerName(nullptr), "text != nullptr");
  EXPECT_DEBUG_DEATH(header->SetDispatcherName(nullptr), "text != nullptr");
  EXPECT_DEBUG_DEATH(header->SetProcessIDDecimalString(nullptr), "text != nullptr");
  EXPECT_DEBUG_DEATH(header->SetProcessIDHexString(nullptr), "text != nullptr");
  EXPECT_DEBUG_DEATH(header->SetThreadIDDecimalString(nullptr), "text != nullptr");
  EXPECT_DEBUG_DEATH(header->SetThreadIDHexString(nullptr), "text != nullptr");
  EXPECT_DEBUG_DEATH(header->SetMessageIDHexString(nullptr), "text != nullptr");
  EXPECT_DEBUG_DEATH(header->SetTimestampISO8601String(nullptr), "text != nullptr");
  EXPECT_DEBUG_DEATH(header->FromString(nullptr), "text != nullptr");
  EXPECT_STREQ("", header->GetLoggerName());
}

TEST(MessageHeader, PrintsTheProcessIdInDecimalAndHex) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetProcessID(0xFFFFABCD);
  EXPECT_STREQ("4294945741", header->GetProcessIDDecimalString());
  EXPECT_STREQ("FFFFABCD", header->GetProcessIDHexString());
  header->SetProcessID(0x1F);
  EXPECT_STREQ("31", header->GetProcessIDDecimalString());
  EXPECT_STREQ("1F", header->GetProcessIDHexString());
}

TEST(MessageHeader, SettingTheSameProcessIdKeepsItsText) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetProcessIDDecimalString("0004711");
  EXPECT_EQ(4711U, header->GetProcessID());
  header->SetProcessID(4711);
  EXPECT_STREQ("0004711", header->GetProcessIDDecimalString());
  header->SetProcessID(4712);
  EXPECT_STREQ("4712", header->GetProcessIDDecimalString());
}

TEST(MessageHeader, ProcessIdTextDiscardsOnlyTheHexText) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetProcessID(1);
  ASSERT_STREQ("1", header->GetProcessIDHexString());
  const std::string line = header->ToString();
  header->SetProcessIDDecimalString("16");
  EXPECT_STREQ("10", header->GetProcessIDHexString());
  EXPECT_EQ(line, header->ToString());
}

TEST(MessageHeader, EmptyProcessIdTextIsRebuilt) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetProcessIDDecimalString("");
  EXPECT_STREQ("0", header->GetProcessIDDecimalString());
}

TEST(MessageHeader, ReadsNegativeProcessIdsAsTheirTwosComplement) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetProcessIDDecimalString("-2");
  EXPECT_EQ(0xFFFFFFFEU, header->GetProcessID());
  EXPECT_STREQ("-2", header->GetProcessIDDecimalString());
  EXPECT_STREQ("FFFFFFFE", header->GetProcessIDHexString());
}

TEST(MessageHeader, ReadsNumbersInHex) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetProcessIDHexString("1f");
  header->SetThreadIDHexString("FFFFFFFFFF");
  header->SetMessageIDHexString("0000012C");
  EXPECT_EQ(0x1FU, header->GetProcessID());
  EXPECT_EQ(0xFFFFFFFFUL, header->GetThreadID());
  EXPECT_EQ(300U, header->GetMessageID());
}

TEST(MessageHeader, PrintsTheFullThreadIdInDecimalAndItsLowHalfInHex) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetThreadID(0x1'0000'00ABUL);
  EXPECT_STREQ("4294967467", header->GetThreadIDDecimalString());
  EXPECT_STREQ("AB", header->GetThreadIDHexString());
  header->SetThreadID(0x1'0000'0000UL);
  EXPECT_STREQ("0", header->GetThreadIDHexString());
}

TEST(MessageHeader, SignExtendsANegativeThreadIdAndKeepsItsText) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetThreadIDDecimalString("-12a");
  EXPECT_EQ(static_cast<unsigned long>(-12L), header->GetThreadID());
  EXPECT_STREQ("-12a", header->GetThreadIDDecimalString());
  EXPECT_STREQ("FFFFFFF4", header->GetThreadIDHexString());
}

TEST(MessageHeader, SettingTheSameThreadIdKeepsItsText) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetThreadIDDecimalString("007");
  header->SetThreadID(7);
  EXPECT_STREQ("007", header->GetThreadIDDecimalString());
  header->SetThreadID(8);
  EXPECT_STREQ("8", header->GetThreadIDDecimalString());
  EXPECT_STREQ("8", header->GetThreadIDHexString());
}

TEST(MessageHeader, PrintsTheMessageIdInEightHexDigits) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetMessageID(300);
  EXPECT_STREQ("0000012C", header->GetMessageIDHexString());
  header->SetMessageID(0xFEDCBA98);
  EXPECT_STREQ("FEDCBA98", header->GetMessageIDHexString());
}

TEST(MessageHeader, ComparesTheDispatcherNameWithError) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  EXPECT_EQ(0, header->SetDispatcherName("Error"));
  EXPECT_LT(header->SetDispatcherName("error"), 0);
  EXPECT_LT(header->SetDispatcherName("Error "), 0);
  EXPECT_GT(header->SetDispatcherName("Erro"), 0);
  EXPECT_GT(header->SetDispatcherName(""), 0);
  EXPECT_GT(header->SetDispatcherName("Debug"), 0);
}

TEST(MessageHeader, KeepsTheTimestampTextAsAccepted) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  EXPECT_EQ(27U, header->SetTimestampISO8601String("2024-03-05 09:07:03.042+5:3 and more"));
  EXPECT_STREQ("2024-03-05 09:07:03.042+5:3", header->GetTimestampISO8601String());
  EXPECT_EQ("2024-03-05 09:07:03.042+05:03", header->GetTimestamp().ToISO8601String());
}

TEST(MessageHeader, TimestampTextThatFailsChangesNothing) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  ASSERT_NE(0U, header->SetTimestampISO8601String("2024-03-05 09:07:03.042+5:3"));
  for (const char* text : {"", "nonsense", "2025-01-01 00:00:00.000+15:00", "2025-01-01 00:00:00.000+5"}) {
    EXPECT_EQ(0U, header->SetTimestampISO8601String(text)) << text;
    EXPECT_STREQ("2024-03-05 09:07:03.042+5:3", header->GetTimestampISO8601String()) << text;
    EXPECT_EQ("2024-03-05 09:07:03.042+05:03", header->GetTimestamp().ToISO8601String()) << text;
  }
}

TEST(MessageHeader, NewTimestampDiscardsTheTextOfTheOldOne) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  ASSERT_NE(0U, header->SetTimestampISO8601String("2024-03-05 09:07:03.042+5:3"));
  header->SetTimestamp(YLog::Timestamp());
  EXPECT_STREQ("1970-01-01 00:00:00.000", header->GetTimestampISO8601String());
  header->SetTimestampToNowLocal();
  EXPECT_EQ(header->GetTimestamp().ToISO8601String(), header->GetTimestampISO8601String());
  EXPECT_GT(header->GetTimestamp().GetYear(), 1970);
}

TEST(MessageHeader, ChangingTheTimestampObjectLeavesItsTextUnchanged) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  const std::string text = header->GetTimestampISO8601String();
  header->GetTimestamp().SetToNowLocal();
  EXPECT_EQ(text, header->GetTimestampISO8601String());
}

TEST(MessageHeader, SettersAcceptTextsReturnedByItsOwnGetters) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetProcessID(0x12);
  header->SetProcessIDDecimalString(header->GetProcessIDHexString());
  EXPECT_STREQ("12", header->GetProcessIDDecimalString());
  EXPECT_EQ(12U, header->GetProcessID());
  header->SetThreadID(0x34);
  header->SetThreadIDDecimalString(header->GetThreadIDHexString());
  EXPECT_STREQ("34", header->GetThreadIDDecimalString());
  header->SetTimestampISO8601String(header->GetTimestampISO8601String());
  EXPECT_STREQ("1970-01-01 00:00:00.000", header->GetTimestampISO8601String());
  header->SetLoggerName("a name longer than the storage of a short string");
  EXPECT_LT(header->SetDispatcherName(header->GetLoggerName()), 0);
  EXPECT_STREQ(header->GetLoggerName(), header->GetDispatcherName());
}

TEST(MessageHeader, KeepsLongTextsControlBytesAndInvalidUtf8) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  for (const std::string& text : {std::string("\x01\x02"), std::string("\t\x7F"), std::string("\xC3\x28\xFF"),
                                  std::string(10'000, 'x')}) {
    header->SetLoggerName(text.c_str());
    header->SetObjectID(text.c_str());
    header->SetMessageID(header->GetMessageID() + 1);
    EXPECT_EQ(text, header->GetLoggerName());
    EXPECT_NE(std::string::npos, std::string(header->ToString()).find("][" + text + "][")) << text.size();
    EXPECT_NE(std::string::npos, std::string(header->ToString()).find("[OID:" + text + "]")) << text.size();
  }
}

TEST(MessageHeader, LivesAsLongAsItIsReferenced) {
  SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetLoggerName("Kernel");
  const SmartPtrI<MessageHeader> other = header;
  header = nullptr;
  EXPECT_STREQ("Kernel", other->GetLoggerName());
}

}  // namespace

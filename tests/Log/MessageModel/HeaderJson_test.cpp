#include <json/reader.h>
#include <json/value.h>
#include <json/writer.h>

#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <YBase/TextConversion.h>
#include <YLog/MessageHeader.h>

#include "support/ReadFile.h"
#include "support/ShellWord.h"
#include "support/TemporaryDirectory.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using YBase::SmartPtrI;
using YLog::CreateMessageHeader;
using YLog::MessageHeader;

const std::string TIME = "2024-03-05 09:07:03.042+01:00";

SmartPtrI<MessageHeader> CreateExample() {
  SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetTimestampISO8601String(TIME.c_str());
  header->SetComputerName("web01");
  header->SetServerInstanceName("Inst1");
  header->SetProcessID(4711);
  header->SetThreadID(123145);
  header->SetLoggerName("Kernel");
  header->SetDispatcherName("Error");
  header->SetMessageID(300);
  header->SetFileName("/src/engine_main");
  header->SetFuncName("Run");
  header->SetLineNumber(42);
  header->SetUserID("U1");
  return header;
}

/// A header in which every text that a client can set is `name`.
SmartPtrI<MessageHeader> CreateNamed(const std::string& name) {
  SmartPtrI<MessageHeader> header = CreateExample();
  for (const auto set :
       {&MessageHeader::SetComputerName, &MessageHeader::SetServerInstanceName, &MessageHeader::SetLoggerName,
        &MessageHeader::SetUserID, &MessageHeader::SetSessionID, &MessageHeader::SetObjectID}) {
    (header.Get()->*set)(name.c_str());
  }
  header->SetDispatcherName(name.c_str());
  return header;
}

/// The values that a reader must find in the JSON form of `CreateNamed(name)`.
std::map<std::string, std::string> ValuesOfNamed(const std::string& name) {
  std::map<std::string, std::string> values{
      {"time", TIME}, {"pid", "4711"}, {"thr", "123145"}, {"message_id", "0x0000012C"}};
  for (const char* key : {"host", "server", "logger", "dispatcher"}) values[key] = name;
  if (!name.empty()) {
    for (const char* key : {"uid", "sid", "oid"}) values[key] = name;
  }
  return values;
}

std::map<std::string, std::string> ReadWithJsonCpp(const std::string& json) {
  const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
  Json::Value object;
  std::string errors;
  EXPECT_TRUE(reader->parse(json.data(), json.data() + json.size(), &object, &errors)) << errors << json;
  std::map<std::string, std::string> values;
  for (const std::string& key : object.getMemberNames()) values[key] = object[key].asString();
  return values;
}

std::string ToHex(const std::string& text) {
  std::string hex;
  for (const char byte : text) {
    const auto bits = static_cast<unsigned char>(byte);
    hex += "0123456789abcdef"[bits >> 4];
    hex += "0123456789abcdef"[bits & 15];
  }
  return hex;
}

/// The line that read_json.py prints for an object with these values.
std::string Print(const std::map<std::string, std::string>& values) {
  std::string line;
  for (const auto& [key, value] : values) line += (line.empty() ? "" : " ") + key + "=" + ToHex(value);
  return line;
}

/// The lines that read_json.py prints for these lines of JSON.
std::vector<std::string> ReadWithPython(const std::string& jsonLines) {
  const Support::TemporaryDirectory directory;
  const auto input = directory.Path() / "input";
  const auto output = directory.Path() / "output";
  std::ofstream(input, std::ios::binary) << jsonLines;
  const std::string command = Support::ShellWord(PYTHON) + " " + Support::ShellWord(READ_JSON) + " <" +
                              Support::ShellWord(input.string()) + " >" + Support::ShellWord(output.string());
  EXPECT_EQ(std::system(command.c_str()), 0);  // NOLINT(cert-env33-c, concurrency-mt-unsafe)
  return Support::Lines(Support::ReadFile(output));
}

std::string WriteWithJsonCpp(const std::map<std::string, std::string>& values) {
  Json::Value object;
  for (const auto& [key, value] : values) object[key] = value;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  return Json::FastWriter().write(object);
#pragma GCC diagnostic pop
}

/// Valid UTF-8; valid text is unchanged.
std::string Repair(const std::string& text) {
  return YBase::WideCharToUTF8(YBase::UTF8ToWideChar(text.c_str()).c_str());
}

const std::vector<std::string> HARD_NAMES = {
    "",
    "\"",
    "\\",
    "\\\"",
    "a\"b\\c/d",
    "\\u0041",
    "\x01\x02\x03\x04\x05\x06\x07\b\t\n\v\f\r\x0E\x0F",
    "\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19\x1A\x1B\x1C\x1D\x1E\x1F\x7F",
    "{\"host\":null}",
    "<script>&amp;'",
    "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80",
    "\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
    "\xE2\x80\xA8\xE2\x80\xA9\xEF\xBB\xBF",
};

struct Broken {
  std::string mName;
  std::string mRepaired;
};

const std::vector<Broken> BROKEN_NAMES = {
    {"\xFF", "\xEF\xBF\xBD"},
    {"\x80", "\xEF\xBF\xBD"},
    {"cut off \xE2\x82", "cut off \xEF\xBF\xBD"},
    {"\xC3\"quoted\"", "\xEF\xBF\xBD\"quoted\""},
    {"caf\xE9\"s\\", "caf\xEF\xBF\xBD\"s\\"},
    {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"\xF4\x90\x80\x80!", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD!"},
};

TEST(HeaderJson, IsOneCompactLineWithItsKeysInOrder) {
  EXPECT_STREQ(
      CreateExample()->ToJsonString(),
      "{\"dispatcher\":\"Error\",\"host\":\"web01\",\"logger\":\"Kernel\",\"message_id\":\"0x0000012C\","
      "\"pid\":\"4711\",\"server\":\"Inst1\",\"thr\":\"123145\","
      "\"time\":\"2024-03-05 09:07:03.042+01:00\",\"uid\":\"U1\"}\n");
}

TEST(HeaderJson, OfANewHeaderHasTheSevenKeysThatAreAlwaysThere) {
  EXPECT_STREQ(
      CreateMessageHeader()->ToJsonString(),
      "{\"dispatcher\":\"\",\"host\":\"\",\"logger\":\"\",\"pid\":\"0\",\"server\":\"\",\"thr\":\"0\","
      "\"time\":\"1970-01-01 00:00:00.000\"}\n");
}

TEST(HeaderJson, HasAMessageIDOfEightDigitsOrNoneForZero) {
  const SmartPtrI<MessageHeader> header = CreateExample();
  header->SetMessageID(1);
  EXPECT_THAT(header->ToJsonString(), HasSubstr("\"message_id\":\"0x00000001\""));
  header->SetMessageID(0);
  EXPECT_THAT(header->ToJsonString(), Not(HasSubstr("message_id")));
}

TEST(HeaderJson, HasUserSessionAndObjectOnlyWhereTheyAreSet) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetSessionID("S1");
  header->SetObjectID("O1");
  EXPECT_THAT(header->ToJsonString(),
              HasSubstr("{\"dispatcher\":\"\",\"host\":\"\",\"logger\":\"\","
                        "\"oid\":\"O1\",\"pid\":\"0\",\"server\":\"\",\"sid\":\"S1\","));
  EXPECT_THAT(header->ToJsonString(), Not(HasSubstr("uid")));
}

TEST(HeaderJson, NeverHasTheSourcePosition) {
  const SmartPtrI<MessageHeader> header = CreateExample();
  ASSERT_THAT(header->ToString(), HasSubstr("[engine_main:Run at line:42]"));
  for (const char* piece : {"engine_main", "Run", "\"42\""}) {
    EXPECT_THAT(header->ToJsonString(), Not(HasSubstr(piece)));
  }
}

TEST(HeaderJson, KeepsItsTextWhenANameOrAnIDChanges) {
  const SmartPtrI<MessageHeader> header = CreateExample();
  const std::string before = header->ToJsonString();
  for (const auto set :
       {&MessageHeader::SetComputerName, &MessageHeader::SetServerInstanceName, &MessageHeader::SetLoggerName,
        &MessageHeader::SetUserID, &MessageHeader::SetSessionID, &MessageHeader::SetObjectID,
        &MessageHeader::SetProcessIDDecimalString, &MessageHeader::SetThreadIDDecimalString}) {
    (header.Get()->*set)("17");
    EXPECT_EQ(header->ToJsonString(), before);
  }
  header->SetDispatcherName("Info");
  header->SetTimestampISO8601String("2000-01-01 00:00:00.000");
  header->SetProcessID(header->GetProcessID());
  EXPECT_EQ(header->ToJsonString(), before);
}

TEST(HeaderJson, IsRebuiltWhenANumberOrTheTimestampChanges) {
  const SmartPtrI<MessageHeader> header = CreateExample();
  header->ToJsonString();
  header->SetMessageID(2);
  EXPECT_THAT(header->ToJsonString(), HasSubstr("\"0x00000002\""));
  header->SetProcessID(3);
  EXPECT_THAT(header->ToJsonString(), HasSubstr("\"pid\":\"3\""));
  header->SetThreadID(4);
  EXPECT_THAT(header->ToJsonString(), HasSubstr("\"thr\":\"4\""));
  header->SetTimestamp(YLog::Timestamp());
  EXPECT_THAT(header->ToJsonString(), HasSubstr("\"time\":\"1970-01-01 00:00:00.000\""));
  header->SetTimestampToNowLocal();
  EXPECT_THAT(header->ToJsonString(), Not(HasSubstr("1970-01-01")));
}

TEST(HeaderJson, IsRebuiltWhenATextLineIsReadIntoTheHeader) {
  const SmartPtrI<MessageHeader> header = CreateExample();
  header->ToJsonString();
  const SmartPtrI<MessageHeader> other = CreateNamed("other");
  ASSERT_GT(header->FromString(other->ToString()), 0U);
  EXPECT_THAT(header->ToJsonString(), HasSubstr("\"host\":\"other\""));
}

TEST(HeaderJson, EscapesQuotesBackslashesAndNonASCIICharacters) {
  const SmartPtrI<MessageHeader> header = CreateMessageHeader();
  header->SetLoggerName("a\"b\\c\n\x01\xC3\xA4\xF0\x9F\x98\x80");
  EXPECT_THAT(header->ToJsonString(), HasSubstr("\"logger\":\"a\\\"b\\\\c\\n\\u0001\\u00e4\\ud83d\\ude00\""));
}

TEST(HeaderJson, IsReadBackByJsonCpp) {
  for (const std::string& name : HARD_NAMES) {
    EXPECT_EQ(ReadWithJsonCpp(CreateNamed(name)->ToJsonString()), ValuesOfNamed(name)) << ToHex(name);
  }
}

TEST(HeaderJson, IsReadBackByAnotherParser) {
  std::string json;
  std::vector<std::string> expected;
  for (const std::string& name : HARD_NAMES) {
    json += CreateNamed(name)->ToJsonString();
    expected.push_back(Print(ValuesOfNamed(name)));
  }
  EXPECT_EQ(ReadWithPython(json), expected);
}

TEST(HeaderJson, ReplacesInvalidUTF8AndNothingElse) {
  std::string json;
  std::vector<std::string> expected;
  for (const auto& [name, repaired] : BROKEN_NAMES) {
    const SmartPtrI<MessageHeader> header = CreateNamed(name);
    EXPECT_EQ(ReadWithJsonCpp(header->ToJsonString()), ValuesOfNamed(repaired)) << ToHex(name);
    json += header->ToJsonString();
    expected.push_back(Print(ValuesOfNamed(repaired)));
  }
  EXPECT_EQ(ReadWithPython(json), expected);
}

RC_GTEST_PROP(HeaderJson, AgreesWithJsonCppForAnyBytes, (std::string bytes)) {
  const std::string name = bytes.c_str();
  const std::string json = CreateNamed(name)->ToJsonString();
  RC_ASSERT(json == WriteWithJsonCpp(ValuesOfNamed(Repair(name))));
  RC_ASSERT(ReadWithJsonCpp(json) == ValuesOfNamed(Repair(name)));
}

}  // namespace

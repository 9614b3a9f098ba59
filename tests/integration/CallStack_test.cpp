#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/LogFiles.h"
#include "support/ShellWord.h"
#include "support/TemporaryDirectory.h"

namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

struct RecordWithStack {
  std::string text;
  std::vector<std::string> frames;
};

/// Runs a client and returns the records that it logs.
std::vector<RecordWithStack> RunClient(const std::string& program) {
  const Support::TemporaryDirectory directory;
  const std::filesystem::path path = directory.Path() / "a.log";
  EXPECT_EQ(0, std::system((Support::ShellWord(program) + " " + Support::ShellWord(path.string())).c_str()));
  std::vector<RecordWithStack> records;
  bool inStack = false;
  for (const std::string& line : Support::ReadLogFiles(path).mLines) {
    if (line == "--------- callstack ---------") {
      inStack = true;
    } else if (line == "-----------------------------") {
      inStack = false;
    } else if (inStack) {
      records.back().frames.push_back(line);
    } else {
      records.push_back({Support::TextOf(line), {}});
    }
  }
  return records;
}

std::vector<std::string> TextsOf(const std::vector<RecordWithStack>& records) {
  std::vector<std::string> texts;
  for (const RecordWithStack& record : records) texts.push_back(record.text);
  return texts;
}

std::string NameOf(const testing::TestParamInfo<const char*>& instance) {
  const std::string program = instance.param;
  const std::string prefix = "log_call_stacks_";
  return program.substr(program.rfind(prefix) + prefix.size());
}

/// How the client was compiled: with and without optimisation and debug information.
class CallStackOfClient : public testing::TestWithParam<const char*> {};

TEST_P(CallStackOfClient, BeginsWithTheFunctionThatLogged) {
  const auto records = RunClient(GetParam());
  EXPECT_THAT(TextsOf(records), ElementsAre("LogMessageByID", "LogStringByID", "LogMessageAndThrow",
                                            "LogStringAndThrow", "LogByRouter", "LogStructuredByRouter"));
  for (const RecordWithStack& record : records) {
    ASSERT_THAT(record.frames, Not(IsEmpty()));
    EXPECT_THAT(record.frames.front(), StartsWith("orders::" + record.text + "(YLog::Router&) "));
    EXPECT_THAT(record.frames.front(), AnyOf(HasSubstr(" at "), HasSubstr(" in log_call_stacks_")));
    EXPECT_THAT(record.frames.front(), Not(HasSubstr(".h:")));
    EXPECT_THAT(record.frames.at(1), StartsWith("main "));
  }
}

INSTANTIATE_TEST_SUITE_P(Built, CallStackOfClient,
                         testing::Values(OPTIMISED, OPTIMISED_WITHOUT_LINES, OPTIMISED_LINES_ONLY,
                                         OPTIMISED_SPLIT, UNOPTIMISED, UNOPTIMISED_WITHOUT_LINES,
                                         UNOPTIMISED_LINES_ONLY, UNOPTIMISED_SPLIT),
                         NameOf);

/// A client without names. Code of the library's headers could not be distinguished from its own there.
class CallStackOfStrippedClient : public testing::TestWithParam<const char*> {};

TEST_P(CallStackOfStrippedClient, BeginsWithPlacesInTheFunctionThatLoggedAndInMain) {
  const std::string program = GetParam();
  const std::string place = program.substr(program.rfind('/') + 1) + "+0x";
  const auto records = RunClient(program);
  EXPECT_THAT(records, SizeIs(6));
  for (const RecordWithStack& record : records) {
    ASSERT_THAT(record.frames, SizeIs(testing::Gt(2U)));
    EXPECT_THAT(record.frames[0], StartsWith(place));
    EXPECT_THAT(record.frames[1], StartsWith(place));
    EXPECT_THAT(record.frames[2], Not(StartsWith(place)));
  }
}

INSTANTIATE_TEST_SUITE_P(Built, CallStackOfStrippedClient,
                         testing::Values(OPTIMISED_STRIPPED, UNOPTIMISED_STRIPPED), NameOf);

}  // namespace

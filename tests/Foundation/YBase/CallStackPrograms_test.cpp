#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::Each;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::SizeIs;
using testing::StartsWith;

struct PrintedStack {
  unsigned long takerOffset = 0;  // Where the function that took it begins.
  std::vector<std::string> frames;
};

/// What a program printed, by the names of its stacks.
std::map<std::string, PrintedStack> RunProgram(const char* program) {
  std::string output;
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(program, "r"), pclose);
  std::array<char, 4096> piece;
  while (std::fgets(piece.data(), piece.size(), pipe.get()) != nullptr) output += piece.data();

  std::map<std::string, PrintedStack> stacks;
  std::istringstream lines(output);
  PrintedStack* current = nullptr;
  for (std::string line; std::getline(lines, line);) {
    for (const char* name : {"= before-main ", "= main ", "= at-exit "}) {
      if (!line.starts_with(name)) continue;
      current = &stacks[name];
      current->takerOffset = std::stoul(line.substr(std::string(name).size()), nullptr, 16);
      line.clear();
    }
    if (current != nullptr && !line.empty()) current->frames.push_back(line);
  }
  return stacks;
}

/// The seventh frame of each stack.
std::map<std::string, std::string> GetClientFrames(const std::map<std::string, PrintedStack>& stacks) {
  std::map<std::string, std::string> frames;
  for (const auto& [name, stack] : stacks) frames[name] = stack.frames.at(6);
  return frames;
}

TEST(CallStackPrograms, ShowsFunctionsAndLinesWhereThereIsDebugInformation) {
  if (!HAS_DEBUG_INFORMATION) GTEST_SKIP() << "The library was built without a reader of debug information.";
  auto frames = GetClientFrames(RunProgram(LINES_PROGRAM));
  EXPECT_THAT(frames["= before-main "],
              MatchesRegex(R"(orders::BeforeMain\(\) at /.*print_call_stack\.cpp:[0-9]+)"));
  EXPECT_THAT(frames["= main "],
              MatchesRegex(R"(orders::TakeInline\(\) at /.*print_call_stack\.cpp:[0-9]+)"));
  EXPECT_THAT(frames["= at-exit "], MatchesRegex(R"(orders::AtExit\(\) at /.*print_call_stack\.cpp:[0-9]+)"));
}

TEST(CallStackPrograms, ShowsInlinedFunctionsBeforeTheOneTheyStandIn) {
  if (!HAS_DEBUG_INFORMATION) GTEST_SKIP() << "The library was built without a reader of debug information.";
  const auto stacks = RunProgram(LINES_PROGRAM);
  const std::vector<std::string>& frames = stacks.at("= main ").frames;
  EXPECT_THAT(frames.at(6), StartsWith("orders::TakeInline() at "));
  EXPECT_THAT(frames.at(7), StartsWith("orders::Serve() at "));
  EXPECT_THAT(frames.at(8), StartsWith("main at "));
}

TEST(CallStackPrograms, ShowsFunctionsAndOffsetsWhereThereAreSymbolsOnly) {
  if (!HAS_DEBUG_INFORMATION) GTEST_SKIP() << "The library was built without a reader of symbol tables.";
  auto frames = GetClientFrames(RunProgram(SYMBOLS_PROGRAM));
  const std::string place = R"(\(\) in print_call_stack_symbols\+0x[0-9a-f]+)";
  EXPECT_THAT(frames["= before-main "], MatchesRegex("orders::BeforeMain" + place));
  EXPECT_THAT(frames["= main "], MatchesRegex("orders::Serve" + place));
  EXPECT_THAT(frames["= at-exit "], MatchesRegex("orders::AtExit" + place));
}

TEST(CallStackPrograms, ShowsOffsetsInTheClientsFunctionWhereThereIsNothing) {
  const auto stacks = RunProgram(STRIPPED_PROGRAM);
  ASSERT_THAT(stacks, SizeIs(3));
  const std::string prefix = "print_call_stack_stripped+0x";
  for (const auto& [name, stack] : stacks) {
    ASSERT_THAT(stack.frames.at(6), StartsWith(prefix)) << name;
    const unsigned long offset = std::stoul(stack.frames[6].substr(prefix.size()), nullptr, 16);
    EXPECT_GT(offset, stack.takerOffset) << name;
    EXPECT_LT(offset, stack.takerOffset + 0x100) << name;
  }
}

TEST(CallStackPrograms, BeginWithSixFramesOfTheLibrary) {
  for (const char* program : {LINES_PROGRAM, SYMBOLS_PROGRAM, STRIPPED_PROGRAM}) {
    for (const auto& [name, stack] : RunProgram(program)) {
      EXPECT_THAT(std::vector(stack.frames.begin(), stack.frames.begin() + 6), Each("libYLog")) << program;
    }
  }
}

}  // namespace

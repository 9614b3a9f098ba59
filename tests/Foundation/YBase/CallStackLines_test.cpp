// What libbacktrace finds in debug information and symbol tables.

#include <array>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallStackModule.h"
#include "NewProcess.h"
#include "PrintedStacks.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

/// The seventh frame of each stack.
std::map<std::string, std::string> GetClientFrames(const std::map<std::string, PrintedStack>& stacks) {
  std::map<std::string, std::string> frames;
  for (const auto& [name, stack] : stacks) frames[name] = stack.frames.at(6);
  return frames;
}

TEST(CallStackLines, ShowsFunctionsAndLinesIfThereIsDebugInformation) {
  auto frames = GetClientFrames(RunProgram(LINES_PROGRAM));
  EXPECT_THAT(frames["= before-main "],
              MatchesRegex(R"(orders::BeforeMain\(\) at /.*print_call_stack\.cpp:[0-9]+)"));
  EXPECT_THAT(frames["= main "],
              MatchesRegex(R"(orders::TakeInline\(\) at /.*print_call_stack\.cpp:[0-9]+)"));
  EXPECT_THAT(frames["= at-exit "], MatchesRegex(R"(orders::AtExit\(\) at /.*print_call_stack\.cpp:[0-9]+)"));
}

TEST(CallStackLines, ShowsTheClientsInlinedFunctionsBeforeTheirCaller) {
  const auto stacks = RunProgram(LINES_PROGRAM);
  const std::vector<std::string>& frames = stacks.at("= main ").frames;
  EXPECT_THAT(frames.at(6), StartsWith("orders::TakeInline() at "));
  EXPECT_THAT(frames.at(7), StartsWith("orders::Serve() at "));
  EXPECT_THAT(frames.at(8), StartsWith("main at "));
}

TEST(CallStackLines, ShowsFunctionsAndOffsetsIfThereAreOnlySymbols) {
  auto frames = GetClientFrames(RunProgram(SYMBOLS_PROGRAM));
  const std::string place = R"(\(\) in print_call_stack_symbols\+0x[0-9a-f]+)";
  EXPECT_THAT(frames["= before-main "], MatchesRegex("orders::BeforeMain" + place));
  EXPECT_THAT(frames["= main "], MatchesRegex("orders::Serve" + place));
  EXPECT_THAT(frames["= at-exit "], MatchesRegex("orders::AtExit" + place));
}

TEST(CallStackLines, ShowsLinesOfAModuleLoadedBeforeTheFirstStack) {
  RunInNewProcess([] {
    const std::vector<std::string> frames = CallStackModule(FIRST_MODULE).GetFrames();
    EXPECT_THAT(frames,
                Contains(MatchesRegex(R"(first::Exported\(void \(\*\)\(\)\) at /.*module\.cpp:[0-9]+)")));
    EXPECT_THAT(frames, Contains(AllOf(HasSubstr("Internal(void (*)()) at "), HasSubstr("module.cpp:"))));
  });
}

TEST(CallStackLines, ShowsLinesOfAModuleThatIsLoadedAgain) {
  RunInNewProcess([] {
    std::array<void*, 2> places;
    std::array<std::vector<std::string>, 2> frames;
    for (std::size_t i = 0; i != 2; ++i) {
      const CallStackModule module(FIRST_MODULE);
      places[i] = module.Address();
      frames[i] = module.GetFrames();
    }
    ASSERT_EQ(places[0], places[1]) << "The loader put it elsewhere, so this proves nothing.";
    EXPECT_EQ(frames[0], frames[1]);
    EXPECT_THAT(frames[0], Contains(AllOf(StartsWith("first::Exported("), HasSubstr("module.cpp:"))));
  });
}

}  // namespace

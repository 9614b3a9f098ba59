#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PrintedStacks.h"

namespace {

using testing::Each;
using testing::SizeIs;
using testing::StartsWith;

TEST(CallStackPrograms, ShowsOffsetsInTheClientsFunctionIfThereAreNoSymbols) {
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

TEST(CallStackPrograms, BeginsWithSixFramesOfTheLibrary) {
  for (const char* program : {LINES_PROGRAM, SYMBOLS_PROGRAM, STRIPPED_PROGRAM}) {
    for (const auto& [name, stack] : RunProgram(program)) {
      EXPECT_THAT(std::vector(stack.frames.begin(), stack.frames.begin() + 6), Each("libYLog")) << program;
    }
  }
}

}  // namespace

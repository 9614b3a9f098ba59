#include "support/ShellWord.h"

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

TEST(ShellWord, ReachesAProgramUnchanged) {
  const Support::TemporaryDirectory directory;
  const auto output = directory.Path() / "it's \"the\" output";
  for (const std::string text : {"", "a b", "it's", "'", "''", "$HOME `id` \\ \" * ;&|<>\n\t#~"}) {
    const std::string command =
        "printf %s " + Support::ShellWord(text) + " >" + Support::ShellWord(output.string());
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    EXPECT_EQ(Support::ReadFile(output), text);
  }
}

}  // namespace

// The files that debug information is read from.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallStackModule.h"
#include "NewProcess.h"
#include "support/TemporaryDirectory.h"

namespace {

using testing::Contains;
using testing::HasSubstr;

/// A copy of a module and of the file with its debug information, in one folder.
struct SeparateModule {
  SeparateModule() {
    const std::filesystem::path original = SEPARATE_MODULE;
    path = directory.Path() / original.filename();
    debugFile = path.string() + ".debug";
    std::filesystem::copy_file(original, path);
    std::filesystem::copy_file(original.string() + ".debug", debugFile);
  }

  Support::TemporaryDirectory directory;
  std::filesystem::path path;
  std::filesystem::path debugFile;
};

/// Replaces a file that may be in use, as an upgrade does.
void Replace(const std::filesystem::path& path) {
  std::filesystem::remove(path);
  std::ofstream(path) << "something else";
}

TEST(CallStackFiles, CanBeReplacedAfterTheFirstStack) {
  RunInNewProcess([] {
    const SeparateModule separate;
    const CallStackModule module(separate.path);
    ASSERT_THAT(module.GetFrames(), Contains(HasSubstr("module.cpp:")));
    Replace(separate.path);
    Replace(separate.debugFile);
    EXPECT_THAT(module.GetFrames("RunInSecondUnit"), Contains(HasSubstr("second_unit.cpp:")));
  });
}

TEST(CallStackFiles, LeaveNoDescriptorOpen) {
  RunInNewProcess([] {
    const int before = dup(STDERR_FILENO);
    close(before);
    const CallStackModule module(SEPARATE_MODULE);
    ASSERT_THAT(module.GetFrames(), Contains(HasSubstr("module.cpp:")));
    const int after = dup(STDERR_FILENO);
    close(after);
    EXPECT_EQ(after, before);
  });
}

}  // namespace

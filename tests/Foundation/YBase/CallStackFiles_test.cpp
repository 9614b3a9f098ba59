// What becomes of the files that debug information is read from.

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallStackModule.h"
#include "NewProcess.h"
#include "support/TemporaryDirectory.h"

namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// A copy of a module and of the file of its debug information, beside each other.
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

void MakePipe(const std::filesystem::path& path) {
  std::filesystem::remove(path);
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
}

std::string TakeOwnFrame() {
  return GetShownFrames(YBase::CreateCallStack()).at(0);
}

TEST(CallStackFiles, AreNotReadAgainOnceTheyAreTruncated) {
  RunInNewProcess([] {
    const SeparateModule separate;
    const CallStackModule module(separate.path);
    ASSERT_THAT(module.GetFrames(), Contains(HasSubstr("module.cpp:")));
    std::filesystem::resize_file(separate.debugFile, 0);
    EXPECT_THAT(module.GetFrames("RunInSecondUnit"), Contains(HasSubstr("second_unit.cpp:")));
  });
}

TEST(CallStackFiles, AreNotReadAgainOnceTheyAreWrittenOver) {
  RunInNewProcess([] {
    const SeparateModule separate;
    const CallStackModule module(separate.path);
    ASSERT_THAT(module.GetFrames(), Contains(HasSubstr("module.cpp:")));
    std::ofstream(separate.debugFile) << std::string(std::filesystem::file_size(separate.debugFile), 'x');
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

TEST(CallStackFiles, ArePassedOverWhereAPipeHasTakenTheirPlace) {
  RunInNewProcess([] {
    const SeparateModule separate;
    const CallStackModule module(separate.path);
    MakePipe(separate.path);
    alarm(20);
    const std::vector<std::string> frames = module.GetFrames();
    EXPECT_THAT(frames, Contains(StartsWith("separate::Exported(")));
    EXPECT_THAT(frames, Each(Not(HasSubstr("module.cpp:"))));
    EXPECT_THAT(TakeOwnFrame(), HasSubstr("CallStackFiles_test.cpp:"));
  });
}

TEST(CallStackFiles, ArePassedOverWhereAPipeHasTakenThePlaceOfDebugInformation) {
  RunInNewProcess([] {
    const SeparateModule separate;
    const CallStackModule module(separate.path);
    MakePipe(separate.debugFile);
    alarm(20);
    EXPECT_THAT(module.GetFrames(), Contains(StartsWith("separate::Exported(")));
    EXPECT_THAT(TakeOwnFrame(), HasSubstr("CallStackFiles_test.cpp:"));
  });
}

}  // namespace

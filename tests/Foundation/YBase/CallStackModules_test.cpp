#include <filesystem>
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
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

TEST(CallStackModules, ShowsExportedFunctionsAndOffsetsOfAModuleLoadedLater) {
  RunInNewProcess([] {
    YBase::CreateCallStack();
    const std::vector<std::string> frames = CallStackModule(FIRST_MODULE).GetFrames();
    EXPECT_THAT(frames,
                Contains(MatchesRegex(R"(first::Exported\(.*\) in libcallstack_first\.so\+0x[0-9a-f]+)")));
    // The loader does not know functions that are local to the module.
    EXPECT_THAT(frames, Contains(MatchesRegex(R"(libcallstack_first\.so\+0x[0-9a-f]+)")));
    EXPECT_THAT(frames, Contains(MatchesRegex(R"(RunInModule in libcallstack_first\.so\+0x[0-9a-f]+)")));
  });
}

TEST(CallStackModules, DoesNotMistakeAModuleForAnEarlierOneAtItsAddress) {
  RunInNewProcess([] {
    void* place;
    {
      const CallStackModule first(FIRST_MODULE);
      place = first.Address();
      ASSERT_THAT(first.GetFrames(), Contains(HasSubstr("first::Exported")));
    }
    const CallStackModule other(OTHER_MODULE);
    ASSERT_EQ(other.Address(), place) << "The loader put the other module elsewhere, so this proves nothing.";
    const std::vector<std::string> frames = other.GetFrames();
    EXPECT_THAT(frames, Contains(StartsWith("other::Exported(")));
    EXPECT_THAT(frames, Each(Not(HasSubstr("first"))));
  });
}

TEST(CallStackModules, DoesNotMistakeAModuleForAnEarlierOneFromTheSameFile) {
  RunInNewProcess([] {
    const Support::TemporaryDirectory directory;
    const std::filesystem::path path = directory.Path() / "module.so";
    std::filesystem::copy_file(FIRST_MODULE, path);
    void* place;
    {
      const CallStackModule first(path);
      place = first.Address();
      ASSERT_THAT(first.GetFrames(), Contains(HasSubstr("first::Exported")));
    }
    std::filesystem::remove(path);
    std::filesystem::copy_file(OTHER_MODULE, path);
    const CallStackModule other(path);
    ASSERT_EQ(other.Address(), place) << "The loader put the other module elsewhere, so this proves nothing.";
    const std::vector<std::string> frames = other.GetFrames();
    EXPECT_THAT(frames, Contains(StartsWith("other::Exported(")));
    EXPECT_THAT(frames, Each(Not(HasSubstr("first"))));
  });
}

TEST(CallStackModules, DoesNotMistakeAModuleForTheFileThatReplacedIt) {
  RunInNewProcess([] {
    const Support::TemporaryDirectory directory;
    const std::filesystem::path path = directory.Path() / "module.so";
    std::filesystem::copy_file(FIRST_MODULE, path);
    const CallStackModule first(path);
    std::filesystem::remove(path);
    std::filesystem::copy_file(OTHER_MODULE, path);
    // The first stack of the process, which reads the file.
    const std::vector<std::string> frames = first.GetFrames();
    EXPECT_THAT(frames, Contains(StartsWith("first::Exported(")));
    EXPECT_THAT(frames, Each(Not(HasSubstr("other"))));
  });
}

TEST(CallStackModules, ShowsOffsetsOfAModuleWithoutSymbols) {
  RunInNewProcess([] {
    const std::vector<std::string> frames = CallStackModule(STRIPPED_MODULE).GetFrames();
    EXPECT_THAT(
        frames,
        Contains(MatchesRegex(R"(stripped::Exported\(.*\) in libcallstack_stripped\.so\+0x[0-9a-f]+)")));
    EXPECT_THAT(frames, Contains(MatchesRegex(R"(libcallstack_stripped\.so\+0x[0-9a-f]+)")));
  });
}

TEST(CallStackModules, ShowsFunctionsOfAModuleWithDamagedDebugInformation) {
  RunInNewProcess([] {
    const std::vector<std::string> frames = CallStackModule(DAMAGED_MODULE).GetFrames();
    EXPECT_THAT(
        frames,
        Contains(MatchesRegex(R"(damaged::Exported\(.*\) in libcallstack_damaged\.so\+0x[0-9a-f]+)")));
  });
}

}  // namespace

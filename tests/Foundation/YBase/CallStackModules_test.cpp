#include <dlfcn.h>

#include <array>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallStackText.h"
#include "support/TemporaryDirectory.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

/// A module that calls back, loaded as long as this exists.
class Module {
 public:
  explicit Module(const std::filesystem::path& path) : mpHandle(dlopen(path.c_str(), RTLD_NOW)) {
    if (mpHandle == nullptr) throw std::runtime_error(dlerror());
    mpRun = reinterpret_cast<void (*)(void (*)())>(dlsym(mpHandle, "RunInModule"));
  }
  ~Module() { dlclose(mpHandle); }
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  void* Address() const { return reinterpret_cast<void*>(mpRun); }

  /// What stands in a stack that a function called by the module takes.
  std::vector<std::string> GetFrames() const {
    static YBase::CallStack sStack;
    mpRun([] { sStack = YBase::CreateCallStack(); });
    return GetShownFrames(std::exchange(sStack, {}));
  }

 private:
  void* mpHandle;
  void (*mpRun)(void (*)());
};

TEST(CallStackModules, ShowsLinesOfAModuleThatIsLoadedAtTheFirstStack) {
  if (!HAS_DEBUG_INFORMATION) GTEST_SKIP() << "The library was built without a reader of debug information.";
  const std::vector<std::string> frames = Module(FIRST_MODULE).GetFrames();
  EXPECT_THAT(frames,
              Contains(MatchesRegex(R"(first::Exported\(void \(\*\)\(\)\) at .*module\.cpp:[0-9]+)")));
  EXPECT_THAT(frames, Contains(AllOf(HasSubstr("Internal"), HasSubstr("module.cpp:"))));
}

TEST(CallStackModules, ShowsExportedFunctionsAndOffsetsOfAModuleThatIsLoadedLater) {
  YBase::CreateCallStack();
  const std::vector<std::string> frames = Module(FIRST_MODULE).GetFrames();
  EXPECT_THAT(frames,
              Contains(MatchesRegex(R"(first::Exported\(.*\) in libcallstack_first\.so\+0x[0-9a-f]+)")));
  // What is local to the module has no name for the loader.
  EXPECT_THAT(frames, Contains(MatchesRegex(R"(libcallstack_first\.so\+0x[0-9a-f]+)")));
  EXPECT_THAT(frames, Contains(MatchesRegex(R"(RunInModule in libcallstack_first\.so\+0x[0-9a-f]+)")));
}

TEST(CallStackModules, DoesNotMistakeAModuleForAnEarlierOneInItsPlace) {
  void* place;
  {
    const Module first(FIRST_MODULE);
    place = first.Address();
    ASSERT_THAT(first.GetFrames(), Contains(HasSubstr("first::Exported")));
  }
  const Module other(OTHER_MODULE);
  ASSERT_EQ(other.Address(), place) << "The loader put the other module elsewhere: this shows nothing.";
  const std::vector<std::string> frames = other.GetFrames();
  EXPECT_THAT(frames, Contains(StartsWith("other::Exported(")));
  EXPECT_THAT(frames, Each(Not(HasSubstr("first"))));
}

TEST(CallStackModules, DoesNotMistakeAModuleForAnEarlierOneOfItsFile) {
  const Support::TemporaryDirectory directory;
  const std::filesystem::path path = directory.Path() / "module.so";
  std::filesystem::copy_file(FIRST_MODULE, path);
  void* place;
  {
    const Module first(path);
    place = first.Address();
    ASSERT_THAT(first.GetFrames(), Contains(HasSubstr("first::Exported")));
  }
  std::filesystem::remove(path);
  std::filesystem::copy_file(OTHER_MODULE, path);
  const Module other(path);
  ASSERT_EQ(other.Address(), place) << "The loader put the other module elsewhere: this shows nothing.";
  const std::vector<std::string> frames = other.GetFrames();
  EXPECT_THAT(frames, Contains(StartsWith("other::Exported(")));
  EXPECT_THAT(frames, Each(Not(HasSubstr("first"))));
}

TEST(CallStackModules, KnowsAModuleThatComesBack) {
  std::array<void*, 2> places;
  std::array<std::vector<std::string>, 2> frames;
  for (std::size_t i = 0; i != 2; ++i) {
    const Module module(FIRST_MODULE);
    places[i] = module.Address();
    frames[i] = module.GetFrames();
  }
  ASSERT_EQ(places[0], places[1]) << "The loader put it elsewhere: this shows nothing.";
  EXPECT_EQ(frames[0], frames[1]);
}

TEST(CallStackModules, ShowsOffsetsOfAModuleWithoutSymbols) {
  const std::vector<std::string> frames = Module(STRIPPED_MODULE).GetFrames();
  EXPECT_THAT(
      frames,
      Contains(MatchesRegex(R"(stripped::Exported\(.*\) in libcallstack_stripped\.so\+0x[0-9a-f]+)")));
  EXPECT_THAT(frames, Contains(MatchesRegex(R"(libcallstack_stripped\.so\+0x[0-9a-f]+)")));
}

TEST(CallStackModules, ShowsWhatItCanOfAModuleWhoseDebugInformationIsDamaged) {
  const std::vector<std::string> frames = Module(DAMAGED_MODULE).GetFrames();
  EXPECT_THAT(frames,
              Contains(MatchesRegex(R"(damaged::Exported\(.*\) in libcallstack_damaged\.so\+0x[0-9a-f]+)")));
}

}  // namespace

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/YLog.h>

#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::StartsWith;

class DestinationRegistry : public testing::Test {
 protected:
  std::wstring Path(const std::wstring& name) const { return mDirectory.Path().wstring() + L"/" + name; }
  static YBase::SmartPtrI<YLog::Destination_DiskFile> Get(const std::wstring& path) {
    return YLog::GetDestination_DiskFile(path.c_str());
  }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
};

TEST_F(DestinationRegistry, ReturnsTheSameFileForTheSamePath) {
  EXPECT_EQ(Get(Path(L"a.log")), Get(Path(L"a.log")));
  EXPECT_NE(Get(Path(L"a.log")), Get(Path(L"b.log")));
}

TEST_F(DestinationRegistry, ReturnsTheSameFileForOtherSpellingsOfItsPath) {
  const auto file = Get(Path(L"a.log"));
  EXPECT_EQ(Get(Path(L"./a.log")), file);
  EXPECT_EQ(Get(Path(L"sub/..//a.log")), file);
}

TEST_F(DestinationRegistry, RegistersRelativeAndAbsoluteSpellingsSeparately) {
  unsetenv("HOME");  // NOLINT(concurrency-mt-unsafe): alone in its process.
  YLog::SetBasePath(mDirectory.Path().wstring().c_str());
  const auto file = Get(Path(L"a.log"));
  EXPECT_EQ(Get(L"a.log"), file);
  // Both spellings are moved when the base path changes. The absolute one is first, and keeps its path.
  YLog::SetBasePath(Path(L"other").c_str());
  EXPECT_EQ(Get(Path(L"a.log")), file);
  EXPECT_EQ(Get(Path(L"other/a.log")), file);
}

TEST_F(DestinationRegistry, DistinguishesPathsByCase) {
  EXPECT_NE(Get(Path(L"a.log")), Get(Path(L"A.log")));
}

TEST_F(DestinationRegistry, ThrowsForAnInvalidPathAndReportsItOnStandardError) {
  const std::wstring path = Path(std::wstring(PATH_MAX, L'x'));
  std::string text;
  testing::internal::CaptureStderr();
  try {
    Get(path);
  } catch (const YBase::ExceptionImpl<YLog::Exception>& failure) {
    text = failure.what();
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), text + "\n");
  EXPECT_THAT(text, StartsWith("YLog::ModuleMain_Impl::GetDestination_DiskFile: Failed to create log file '" +
                               fs::path(path).string() + "'. YFileSystem::Path::Combine: "));
}

TEST_F(DestinationRegistry, ReturnsAFileEvenIfItCannotBeOpened) {
  fs::create_directory(mDirectory.Path() / "a.log");
  EXPECT_EQ(Get(Path(L"a.log"))->GetFilePath(), Path(L"a.log"));
}

TEST_F(DestinationRegistry, ReturnsTheSameFileToThreadsThatAskAtOnce) {
  std::vector<YBase::SmartPtrI<YLog::Destination_DiskFile>> files(8);
  {
    std::vector<std::jthread> threads;
    for (auto& file : files) threads.emplace_back([&] { file = Get(Path(L"a.log")); });
  }
  for (const auto& file : files) EXPECT_EQ(file, files.front());
}

TEST_F(DestinationRegistry, HasOneDebugOutput) {
  EXPECT_EQ(YLog::GetDestination_DebugOutput(), YLog::GetDestination_DebugOutput());
}

TEST_F(DestinationRegistry, HasOneSystemLog) {
  const auto log = YLog::GetDestination_SystemLog();
  EXPECT_NE(log, nullptr);
  EXPECT_EQ(YLog::GetDestination_SystemLog(), log);
  std::jthread([&] { EXPECT_EQ(YLog::GetDestination_SystemLog(), log); }).join();
}

TEST_F(DestinationRegistry, RegistersNothingForAnInvalidPath) {
  unsetenv("HOME");  // NOLINT(concurrency-mt-unsafe): alone in its process.
  YLog::SetBasePath(Path(std::wstring(PATH_MAX, L'x')).c_str());
  testing::internal::CaptureStderr();
  EXPECT_THROW(Get(L"a.log"), YLog::Exception);
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  // A file registered under a relative path is moved, which creates it there.
  YLog::SetBasePath(Path(L"folder").c_str());
  EXPECT_FALSE(fs::exists(mDirectory.Path() / "folder"));
  EXPECT_EQ(Get(L"a.log")->GetFilePath(), Path(L"folder/a.log"));
}

TEST_F(DestinationRegistry, CreatesNothingForAKafkaLogWithoutAName) {
  unsetenv("HOME");  // NOLINT(concurrency-mt-unsafe): alone in its process.
  YLog::SetBasePath(Path(L"folder").c_str());
  EXPECT_EQ(YLog::GetDestination_KafkaLog(nullptr), nullptr);
  EXPECT_FALSE(fs::exists(mDirectory.Path() / "folder"));
  YLog::SetBasePath(Path(L"other").c_str());
  EXPECT_TRUE(fs::is_empty(mDirectory.Path()));
}

TEST_F(DestinationRegistry, KeepsItsFilesUntilTheModuleStops) {
  const YLog::Destination_DiskFile* file = Get(Path(L"a.log")).Get();
  EXPECT_EQ(Get(Path(L"a.log")).Get(), file);
}

}  // namespace

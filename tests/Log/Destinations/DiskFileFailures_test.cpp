#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YBase/TextConversion.h>
#include <YLog/Initializer.h>
#include <YLog/MessageHeader.h>

#include "Destinations/Destination_DiskFile_Impl.h"
#include "support/ChildProcess.h"
#include "support/FakeClock.h"
#include "support/ReadFile.h"
#include "support/SmallFileSystem.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using std::chrono::seconds;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

const std::string HEAD = "\xEF\xBB\xBF# Vellatorquine Log version 2.0\n";

/// Failures of the file system: a full disk, a read-only one, missing permission, the file size limit.
class DiskFileFailures : public testing::Test {
 protected:
  YLog::Destination_DiskFile_Impl& Open() {
    const std::wstring path = YBase::UTF8ToWideChar(Path().c_str());
    mDestination.emplace(new YLog::Destination_DiskFile_Impl(path.c_str()));
    return **mDestination;
  }
  void Log(const std::string& text) { (*mDestination)->LogMessage(text.c_str(), *mHeader); }
  void LogAfterRetryPeriod(const std::string& text) {
    mClock.Advance(seconds(300));
    Log(text);
  }
  std::string Record(const std::string& text) const { return mHeader->ToString() + (" " + text + "\n"); }

  fs::path Path(const std::string& suffix = "") const { return mDirectory.Path() / ("a.log" + suffix); }
  std::string Content(const std::string& suffix = "") const { return Support::ReadFile(Path(suffix)); }

  const YLog::Initializer mInitializer;
  Support::FakeClock mClock{std::chrono::sys_days(std::chrono::year(2024) / 3 / 5)};
  const Support::TemporaryDirectory mDirectory;
  const YBase::SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
  std::optional<YBase::SmartPtrI<YLog::Destination_DiskFile_Impl>> mDestination;
};

class DiskFileOnSmallFileSystem : public DiskFileFailures {};

TEST_F(DiskFileOnSmallFileSystem, FullDiskLeavesWholeRecordsAndAnExactCount) {
  Support::RunOnSmallFileSystem(mDirectory.Path(), 65536, [this] {
    std::ofstream(Path(".ballast")) << std::string(16384, 'x');
    Open();
    constexpr std::size_t RECORDS = 30;
    const std::string text(5000, 'x');
    for (std::size_t record = 0; record < RECORDS; ++record) Log(text);

    const std::string full = Content();
    const std::size_t written = (full.size() - HEAD.size()) / Record(text).size();
    ASSERT_LT(written, RECORDS) << "the disk did not become full";
    EXPECT_EQ(full.size(), HEAD.size() + written * Record(text).size()) << "part of a record remained";

    fs::remove(Path(".ballast"));
    LogAfterRetryPeriod("written");
    EXPECT_THAT(Content(), HasSubstr(" Missed " + std::to_string(RECORDS - written) + " messages since "));
    EXPECT_THAT(Content(), HasSubstr("No space left on device\n"));
    EXPECT_THAT(Content(), StartsWith(full));
    EXPECT_THAT(Content(), EndsWith(Record("written")));
  });
}

TEST_F(DiskFileOnSmallFileSystem, CopyThatDoesNotFitLeavesTheFileUnchangedAndTheReportNamesTheBackup) {
  Support::RunOnSmallFileSystem(mDirectory.Path(), 102400, [this] {
    Open().SetMaximumFileSize(60000);
    Log(std::string(60000, 'x'));
    const std::string full = Content();
    Log("lost");
    EXPECT_EQ(Content(), full);
    EXPECT_FALSE(fs::exists(Path(".bak00")));
    EXPECT_FALSE(fs::exists(Path(".part")));

    (*mDestination)->SetMaximumFileSize(2'000'000);
    LogAfterRetryPeriod("written");
    EXPECT_THAT(Content(), HasSubstr(" Missed 1 messages since "));
    EXPECT_THAT(Content(),
                HasSubstr(" due to: YLog::Destination_DiskFile_Impl::WriteMessage: ::write failed for file " +
                          Path(".bak00").string() + ".\n"));
  });
}

TEST_F(DiskFileOnSmallFileSystem, OldestBackupIsDeletedToMakeSpaceForTheCopy) {
  Support::RunOnSmallFileSystem(mDirectory.Path(), 102400, [this] {
    Open().SetMaximumFileSize(40000);
    for (const char letter : {'a', 'b', 'c'}) Log(std::string(40000, letter));
    EXPECT_THAT(Content(), EndsWith("cc\n"));
    EXPECT_THAT(Content(".bak00"), EndsWith("bb\n"));
  });
}

TEST_F(DiskFileOnSmallFileSystem, DiskThatStaysFullIsRetriedEvery300Seconds) {
  Support::RunOnSmallFileSystem(mDirectory.Path(), 16384, [this] {
    std::ofstream(Path(".ballast")) << std::string(12000, 'x');
    Open();
    for (int message = 0; message < 3; ++message) Log(std::string(20000, 'x'));
    // The report still fits, the message after it does not.
    LogAfterRetryPeriod(std::string(20000, 'x'));
    EXPECT_THAT(Content(), HasSubstr(" Missed 3 messages since "));
    Log("dropped");
    fs::remove(Path(".ballast"));
    LogAfterRetryPeriod("written");
    EXPECT_THAT(Content(), HasSubstr(" Missed 2 messages since "));
    EXPECT_THAT(Content(), EndsWith(Record("written")));
  });
}

TEST_F(DiskFileOnSmallFileSystem, MessagesAreCountedWhileTheFileSystemIsReadOnly) {
  Support::RunOnSmallFileSystem(mDirectory.Path(), 65536, [this] {
    ASSERT_EQ(mount("none", mDirectory.Path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    Open();
    Log("lost");
    Log("lost");
    ASSERT_EQ(mount("none", mDirectory.Path().c_str(), nullptr, MS_REMOUNT, nullptr), 0);
    LogAfterRetryPeriod("written");
    EXPECT_THAT(Content(), HasSubstr(" Missed 2 messages since "));
    EXPECT_THAT(Content(), HasSubstr("Read-only file system\n"));
  });
}

TEST_F(DiskFileFailures, MessagesAreCountedWhileTheFolderIsNotWritable) {
  constexpr unsigned NOBODY = 65534;
  // Root may write anywhere, so the child gives up its privileges.
  Support::ChildProcess child([this] {
    if (getuid() == 0) {
      EXPECT_EQ(chown(mDirectory.Path().c_str(), NOBODY, NOBODY), 0);
      EXPECT_EQ(setgid(NOBODY), 0);
      EXPECT_EQ(setuid(NOBODY), 0);
    }
    EXPECT_EQ(chmod(mDirectory.Path().c_str(), 0555), 0);
    Open();
    Log("lost");
    EXPECT_FALSE(fs::exists(Path()));
    EXPECT_EQ(chmod(mDirectory.Path().c_str(), 0755), 0);
    LogAfterRetryPeriod("written");
    EXPECT_THAT(Content(), HasSubstr(" Missed 1 messages since "));
    EXPECT_THAT(Content(), HasSubstr("Permission denied\n"));
    return HasFailure() ? 1 : 0;
  });
  EXPECT_EQ(child.Wait(), 0);
}

TEST_F(DiskFileFailures, FileSizeLimitOfTheProcessIsAFailureAndNotASignal) {
  Support::ChildProcess child([this] {
    const rlimit limit{.rlim_cur = 4096, .rlim_max = RLIM_INFINITY};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    Open();
    Log("one");
    const std::string before = Content();
    Log(std::string(5000, 'x'));
    EXPECT_EQ(Content(), before) << "part of a record remained";

    const rlimit none{.rlim_cur = RLIM_INFINITY, .rlim_max = RLIM_INFINITY};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
    LogAfterRetryPeriod("written");
    EXPECT_THAT(Content(), HasSubstr(" Missed 1 messages since "));
    EXPECT_THAT(Content(), HasSubstr("File too large\n"));
    return HasFailure() ? 1 : 0;
  });
  EXPECT_EQ(child.Wait(), 0);
}

TEST_F(DiskFileFailures, FileSizeLimitAppliesToTheCopyOfARotation) {
  Support::ChildProcess child([this] {
    Open().SetMaximumFileSize(1);
    Log(std::string(5000, 'x'));
    const std::string before = Content();
    const rlimit limit{.rlim_cur = 4096, .rlim_max = RLIM_INFINITY};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    Log("lost");
    EXPECT_EQ(Content(), before);
    EXPECT_FALSE(fs::exists(Path(".part")));
    return HasFailure() ? 1 : 0;
  });
  EXPECT_EQ(child.Wait(), 0);
}

}  // namespace

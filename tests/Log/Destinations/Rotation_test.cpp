#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "Log/Destinations/RotationTest.h"
#include "support/FakeClock.h"
#include "support/FaultyFileOperations.h"
#include "support/FileCallHook.h"
#include "support/New.h"

namespace {

namespace fs = std::filesystem;

using Rotation = RotationTest;

TEST_F(Rotation, DoesNotRotateAFileOneByteBelowItsLimit) {
  mDestination->SetMaximumFileSize(SizeOf("one") + 1);
  Log("one");
  Log("two");
  EXPECT_EQ(Content(), HEAD + Record("one") + Record("two"));
  EXPECT_FALSE(Exists(".bak00"));
}

TEST_F(Rotation, RotatesWhenTheFileIsExactlyAtItsLimit) {
  mDestination->SetMaximumFileSize(SizeOf("one"));
  Log("one");
  EXPECT_FALSE(Exists(".bak00"));
  Log("two");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_EQ(Content(), HEAD + Record("two"));
}

TEST_F(Rotation, NeverSplitsARecord) {
  mDestination->SetMaximumFileSize(HEAD.size() + 10);
  Log(std::string(5000, 'x'));
  EXPECT_EQ(Content(), HEAD + Record(std::string(5000, 'x')));
}

TEST_F(Rotation, KeepsTheSameFileOpenUnderItsPath) {
  mDestination->SetMaximumFileSize(1);
  Log("one");
  struct stat before {};
  ASSERT_EQ(stat(Path().c_str(), &before), 0);
  Log("two");
  struct stat after {};
  ASSERT_EQ(stat(Path().c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(Rotation, ReplacesItsOneBackupByDefault) {
  mDestination->SetMaximumFileSize(1);
  for (const char* text : {"one", "two", "three"}) Log(text);
  EXPECT_EQ(Content(".bak00"), HEAD + Record("two"));
  EXPECT_FALSE(Exists(".bak01"));
}

TEST_F(Rotation, NumbersItsBackupsFromTheNewest) {
  mDestination->SetMaximumFileSize(1);
  mDestination->SetMaximumFileBackup(3);
  for (const char* text : {"one", "two", "three", "four", "five"}) Log(text);
  EXPECT_EQ(Content(), HEAD + Record("five"));
  EXPECT_EQ(Content(".bak00"), HEAD + Record("four"));
  EXPECT_EQ(Content(".bak01"), HEAD + Record("three"));
  EXPECT_EQ(Content(".bak02"), HEAD + Record("two"));
  EXPECT_FALSE(Exists(".bak03"));
}

TEST_F(Rotation, WritesNumbersAbove99WithThreeDigits) {
  WriteBackups(100);
  mDestination->SetMaximumFileSize(1);
  mDestination->SetMaximumFileBackup(256);
  Log("one");
  Log("two");
  EXPECT_EQ(Content(".bak100"), "b99");
  EXPECT_EQ(Content(".bak99"), "b98");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
}

TEST_F(Rotation, KeepsAtMost256Backups) {
  WriteBackups(256);
  mDestination->SetMaximumFileSize(1);
  mDestination->SetMaximumFileBackup(256);
  Log("one");
  Log("two");
  EXPECT_EQ(Content(".bak255"), "b254");
  EXPECT_FALSE(Exists(".bak256"));
}

TEST_F(Rotation, KeepsOneBackupIfTheLimitIsZero) {
  Write(".bak01", "b1");
  mDestination->SetMaximumFileSize(1);
  mDestination->SetMaximumFileBackup(0);
  for (const char* text : {"one", "two", "three"}) Log(text);
  EXPECT_EQ(Content(".bak00"), HEAD + Record("two"));
  EXPECT_EQ(Content(".bak01"), "b1");
}

TEST_F(Rotation, FillsAGapInTheBackupNumbers) {
  WriteBackups(4);
  fs::remove(Path(".bak02"));
  mDestination->SetMaximumFileSize(1);
  mDestination->SetMaximumFileBackup(8);
  Log("one");
  Log("two");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_EQ(Content(".bak01"), "b0");
  EXPECT_EQ(Content(".bak02"), "b1");
  EXPECT_EQ(Content(".bak03"), "b3");
  EXPECT_FALSE(Exists(".bak04"));
}

TEST_F(Rotation, CopiesAFileLargerThanItsBuffer) {
  const std::string text(700'000, 'x');
  mDestination->SetMaximumFileSize(1);
  Log(text);
  Log("two");
  EXPECT_EQ(Content(".bak00"), HEAD + Record(text));
}

TEST_F(Rotation, ReplacesASymbolicLinkInPlaceOfABackup) {
  Write(".victim", "untouched");
  fs::create_symlink(Path(".victim"), Path(".bak00"));
  mDestination->SetMaximumFileSize(1);
  Log("one");
  Log("two");
  EXPECT_EQ(Content(".victim"), "untouched");
  EXPECT_FALSE(fs::is_symlink(Path(".bak00")));
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
}

TEST_F(Rotation, ReplacesASymbolicLinkInPlaceOfTheCopy) {
  Write(".victim", "untouched");
  fs::create_symlink(Path(".victim"), Path(".part"));
  mDestination->SetMaximumFileSize(1);
  Log("one");
  Log("two");
  EXPECT_EQ(Content(".victim"), "untouched");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
}

TEST_F(Rotation, LeavesNoCopyBehind) {
  mDestination->SetMaximumFileSize(1);
  Log("one");
  Log("two");
  EXPECT_FALSE(Exists(".part"));
}

// Backups that are renamed or deleted to make room.

TEST_F(Rotation, FailsIfTheSystemCannotTellWhetherABackupExists) {
  for (const int error : {EIO, ENOMEM, EACCES}) {
    Write("", "full");
    WriteBackups(2);
    mDestination->SetMaximumFileSize(1);
    mDestination->SetMaximumFileBackup(5);
    Support::FakeClock clock(std::chrono::sys_days(std::chrono::year(2024 + error) / 3 / 5));
    Support::FaultyFileOperations faults;
    // The first two calls ask about the copy.
    faults.mQueryName.Inject(error, 1, 2);
    Log("lost");
    EXPECT_TRUE(faults.mQueryName.HasHappened());
    EXPECT_EQ(Content(".bak00"), "b0");
    EXPECT_EQ(Content(".bak01"), "b1");
    EXPECT_THAT(Content(), testing::StartsWith("full"));
    EXPECT_FALSE(Exists(".bak02"));
    EXPECT_FALSE(IsCopyLeft());
  }
}

TEST_F(Rotation, LooksForABackupAgainIfASignalInterruptsTheCall) {
  Write("", "full");
  WriteBackups(1);
  mDestination->SetMaximumFileSize(1);
  mDestination->SetMaximumFileBackup(2);
  Support::FaultyFileOperations faults;
  faults.mQueryName.Inject(EINTR, 3, 2);
  Log("one");
  EXPECT_TRUE(faults.mQueryName.HasHappened());
  EXPECT_EQ(Content(".bak01"), "b0");
  EXPECT_EQ(Content(".bak00"), "full");
}

TEST_F(Rotation, DoesNotRotateAnEmptyFile) {
  WriteBackups(2);
  mDestination->SetMaximumFileSize(0);
  mDestination->SetMaximumFileBackup(3);
  Log("lost");
  EXPECT_EQ(Content(), "");
  EXPECT_EQ(Content(".bak00"), "b0");
  EXPECT_EQ(Content(".bak01"), "b1");
  EXPECT_FALSE(Exists(".bak02"));
}

TEST_F(Rotation, DeletesTheOldBackupBeforeItCopiesIfTheLimitIsZero) {
  Write("", "full");
  WriteBackups(1);
  mDestination->SetMaximumFileSize(1);
  mDestination->SetMaximumFileBackup(0);
  bool wasGone = false;
  {
    const Support::FileCallHook hook([&](std::string_view call) {
      if (call == "write" && IsCopyLeft()) wasGone = !Exists(".bak00");
      return 0;
    });
    Log("one");
  }
  EXPECT_TRUE(wasGone);
  EXPECT_EQ(Content(".bak00"), "full");
}

TEST_F(Rotation, FailsBeforeItEmptiesTheFileIfADirectoryHasTheNameOfABackup) {
  for (const unsigned long count : {0UL, 1UL, 3UL}) {
    const Support::TemporaryDirectory directory;
    const fs::path path = directory.Path() / "a.log";
    fs::create_directory(path.string() + ".bak00");
    std::ofstream(path) << "full";
    const auto file = Support::New<YLog::Destination_DiskFile_Impl>(path.wstring().c_str());
    file->SetMaximumFileSize(1);
    file->SetMaximumFileBackup(count);
    file->LogMessage("lost", *mHeader);
    EXPECT_EQ(Support::ReadFile(path), "full") << count;
    EXPECT_TRUE(fs::is_directory(path.string() + ".bak00"));
    EXPECT_FALSE(fs::exists(path.string() + ".part"));
  }
}

TEST_F(Rotation, RenamesABackupThatIsALinkWithoutFollowingIt) {
  Write(".victim", "untouched");
  fs::create_symlink(Path(".victim"), Path(".bak00"));
  mDestination->SetMaximumFileSize(1);
  mDestination->SetMaximumFileBackup(3);
  Log("one");
  Log("two");
  EXPECT_TRUE(fs::is_symlink(Path(".bak01")));
  EXPECT_EQ(Content(".victim"), "untouched");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
}

TEST_F(Rotation, WorksForTheLongestNamesThatLeaveRoomForTheSuffixes) {
  for (const std::size_t length : {246U, 247U, 248U, 249U}) {
    const fs::path path = mDirectory.Path() / std::string(length, 'n');
    const auto file = Support::New<YLog::Destination_DiskFile_Impl>(path.wstring().c_str());
    file->SetMaximumFileSize(1);
    file->LogMessage("one", *mHeader);
    file->LogMessage("two", *mHeader);
    EXPECT_EQ(Support::ReadFile(path), HEAD + Record("two")) << length;
    EXPECT_EQ(Support::ReadFile(path.string() + ".bak00"), HEAD + Record("one"));
  }
}

TEST_F(Rotation, KeepsNoBackupWhoseNameWouldBeTooLong) {
  const fs::path path = mDirectory.Path() / std::string(249, 'n');
  for (int number = 0; number < 100; ++number) {
    std::ofstream(path.string() + BackupSuffix(number)) << "b" << number;
  }
  const auto file = Support::New<YLog::Destination_DiskFile_Impl>(path.wstring().c_str());
  file->SetMaximumFileSize(1);
  file->SetMaximumFileBackup(256);
  file->LogMessage("one", *mHeader);
  file->LogMessage("two", *mHeader);
  EXPECT_EQ(Support::ReadFile(path.string() + ".bak00"), HEAD + Record("one"));
  EXPECT_EQ(Support::ReadFile(path.string() + ".bak99"), "b98");
}

// Who may read a backup.

TEST_F(Rotation, BackupHasTheModeOfTheFile) {
  mDestination->SetMaximumFileSize(1);
  for (const unsigned mode : {0600U, 0640U, 0604U, 0666U, 0777U}) {
    Log("one");
    fs::permissions(Path(), fs::perms(mode));
    Log("two");
    EXPECT_EQ(fs::status(Path(".bak00")).permissions(), fs::perms(mode));
  }
}

TEST_F(Rotation, OwnerMayReadTheBackupOfAFileThatNobodyMayRead) {
  mDestination->SetMaximumFileSize(1);
  Log("one");
  fs::permissions(Path(), fs::perms(0220));
  Log("two");
  EXPECT_EQ(fs::status(Path(".bak00")).permissions(), fs::perms(0620));
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
}

/// Reports a foreign owner and group for one file, and records which of them are requested for its copy.
class ForeignFile final : public Support::FileOperationsWrapper {
 public:
  explicit ForeignFile(const fs::path& path) : mPath(path) {}

  int QueryDescriptor(int descriptor, YFileSystem::FileFacts& facts) noexcept override {
    YFileSystem::FileFacts foreign;
    FileOperationsWrapper::QueryPath(mPath.c_str(), foreign);
    const int result = FileOperationsWrapper::QueryDescriptor(descriptor, facts);
    if (facts.mIdentity == foreign.mIdentity) {
      facts.mOwner = OWNER;
      facts.mGroup = GROUP;
    }
    return result;
  }
  int ChangePermissions(int descriptor, mode_t permissions) noexcept override {
    mChanges.push_back("permissions");
    return FileOperationsWrapper::ChangePermissions(descriptor, permissions);
  }
  int ChangeOwner(int, uid_t owner, gid_t group) noexcept override {
    if (owner == OWNER && group == static_cast<gid_t>(-1)) mChanges.push_back("owner");
    if (owner == static_cast<uid_t>(-1) && group == GROUP) mChanges.push_back("group");
    errno = EPERM;
    return mbMayChangeOwner ? 0 : -1;
  }

  std::vector<std::string> mChanges;
  bool mbMayChangeOwner = true;

 private:
  static constexpr uid_t OWNER = 4711;
  static constexpr gid_t GROUP = 4712;

  const fs::path mPath;
  const Support::ScopedFileOperations mScope{*this};
};

TEST_F(Rotation, BackupGetsTheGroupOfTheFileThenItsModeThenItsOwner) {
  mDestination->SetMaximumFileSize(1);
  Log("one");
  ForeignFile file(Path());
  Log("two");
  EXPECT_THAT(file.mChanges, testing::ElementsAre("group", "permissions", "owner"));
  EXPECT_EQ(fs::status(Path(".bak00")).permissions(), fs::perms(0640));
}

TEST_F(Rotation, BackupIsNotReadableByAGroupOtherThanTheFiles) {
  mDestination->SetMaximumFileSize(1);
  Log("one");
  ForeignFile file(Path());
  file.mbMayChangeOwner = false;
  Log("two");
  EXPECT_THAT(file.mChanges, testing::ElementsAre("group", "permissions", "owner"));
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_EQ(fs::status(Path(".bak00")).permissions(), fs::perms(0600));
}

// Fragments left by a writer that was killed during a write.

TEST_F(Rotation, EndsAFragmentBeforeItsOwnRecord) {
  Write("", HEAD + "whole\nfragm");
  Log("one");
  EXPECT_EQ(Content(), HEAD + "whole\nfragm\n" + Record("one"));
}

TEST_F(Rotation, EndsAFragmentThatAnotherWriterLeftMeanwhile) {
  Log("one");
  std::ofstream(Path(), std::ios::app) << "fragm";
  Log("two");
  EXPECT_EQ(Content(), HEAD + Record("one") + "fragm\n" + Record("two"));
}

TEST_F(Rotation, EndsAFragmentInANewFileOfTheSameSize) {
  Log("one");
  const std::string foreign(SizeOf("one"), 'x');
  fs::rename(Path(), Path(".moved"));
  Write("", foreign);
  Log("two");
  EXPECT_EQ(Content(), foreign + "\n" + Record("two"));
}

TEST_F(Rotation, AddsNoLineFeedAfterAWholeRecordOfAnotherWriter) {
  Log("one");
  std::ofstream(Path(), std::ios::app) << "other\n";
  Log("two");
  EXPECT_EQ(Content(), HEAD + Record("one") + "other\n" + Record("two"));
}

TEST_F(Rotation, RewritesAPartialHead) {
  for (std::size_t length = 1; length < HEAD.size(); ++length) {
    Write("", HEAD.substr(0, length));
    Log("one");
    EXPECT_EQ(Content(), HEAD + Record("one")) << length;
  }
}

TEST_F(Rotation, KeepsAShortFileThatIsNotPartOfAHead) {
  Write("", "mine");
  Log("one");
  EXPECT_EQ(Content(), "mine\n" + Record("one"));
}

}  // namespace

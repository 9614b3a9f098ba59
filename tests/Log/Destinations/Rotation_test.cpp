#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/Initializer.h>
#include <YLog/MessageHeader.h>

#include "Destinations/Destination_DiskFile_Impl.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

const std::string HEAD = "\xEF\xBB\xBF# Vellatorquine Log version 2.0\n";

class Rotation : public testing::Test {
 protected:
  void Log(const std::string& text) { mDestination->LogMessage(text.c_str(), *mHeader); }
  std::string Record(const std::string& text) const { return mHeader->ToString() + (" " + text + "\n"); }
  std::size_t SizeOf(const std::string& text) const { return HEAD.size() + Record(text).size(); }

  fs::path Path(const std::string& suffix = "") const { return mDirectory.Path() / ("a.log" + suffix); }
  std::string Content(const std::string& suffix = "") const { return Support::ReadFile(Path(suffix)); }
  bool Exists(const std::string& suffix) const { return fs::exists(fs::symlink_status(Path(suffix))); }
  void Write(const std::string& suffix, const std::string& content) const {
    std::ofstream(Path(suffix), std::ios::binary) << content;
  }
  static std::string BackupSuffix(int number) {
    char suffix[16];
    std::snprintf(suffix, sizeof suffix, ".bak%02d", number);
    return suffix;
  }
  void WriteBackups(int count) const {
    for (int number = 0; number < count; ++number) Write(BackupSuffix(number), "b" + std::to_string(number));
  }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
  const YBase::SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
  const YBase::SmartPtrI<YLog::Destination_DiskFile_Impl> mDestination{
      new YLog::Destination_DiskFile_Impl(Path().wstring().c_str())};
};

TEST_F(Rotation, LeavesAFileOneByteBelowItsLimitAlone) {
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

TEST_F(Rotation, WritesNumbersPast99WithThreeDigits) {
  WriteBackups(100);
  mDestination->SetMaximumFileSize(1);
  mDestination->SetMaximumFileBackup(256);
  Log("one");
  Log("two");
  EXPECT_EQ(Content(".bak100"), "b99");
  EXPECT_EQ(Content(".bak99"), "b98");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
}

TEST_F(Rotation, KeepsTheLastOf256Backups) {
  WriteBackups(256);
  mDestination->SetMaximumFileSize(1);
  mDestination->SetMaximumFileBackup(256);
  Log("one");
  Log("two");
  EXPECT_EQ(Content(".bak255"), "b254");
  EXPECT_FALSE(Exists(".bak256"));
}

TEST_F(Rotation, CopiesIntoOneBackupWhenNoneAreToBeKept) {
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

TEST_F(Rotation, ReplacesASymbolicLinkInABackupsPlace) {
  Write(".victim", "untouched");
  fs::create_symlink(Path(".victim"), Path(".bak00"));
  mDestination->SetMaximumFileSize(1);
  Log("one");
  Log("two");
  EXPECT_EQ(Content(".victim"), "untouched");
  EXPECT_FALSE(fs::is_symlink(Path(".bak00")));
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
}

TEST_F(Rotation, ReplacesASymbolicLinkInTheCopysPlace) {
  Write(".victim", "untouched");
  fs::create_symlink(Path(".victim"), Path(".rotating"));
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
  EXPECT_FALSE(Exists(".rotating"));
}

TEST_F(Rotation, FinishesARotationThatWasKilledBehindTheEmptyingOfTheFile) {
  Write(".rotating", HEAD + "whole\n");
  mDestination->SetMaximumFileBackup(3);
  Log("one");
  EXPECT_EQ(Content(".bak00"), HEAD + "whole\n");
  EXPECT_FALSE(Exists(".rotating"));
  EXPECT_EQ(Content(), HEAD + Record("one"));
}

TEST_F(Rotation, ShiftsTheBackupsBeforeItFinishesAKilledRotation) {
  Write(".rotating", "whole");
  WriteBackups(1);
  mDestination->SetMaximumFileBackup(3);
  Log("one");
  EXPECT_EQ(Content(".bak00"), "whole");
  EXPECT_EQ(Content(".bak01"), "b0");
}

TEST_F(Rotation, ThrowsTheCopyOfAKilledRotationAwayWhereTheFileIsFull) {
  Log("one");
  Write(".rotating", "a part of");
  mDestination->SetMaximumFileSize(1);
  Log("two");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_EQ(Content(), HEAD + Record("two"));
  EXPECT_FALSE(Exists(".rotating"));
}

// What a writer killed inside its write leaves.

TEST_F(Rotation, EndsAFragmentBeforeItsOwnRecord) {
  Write("", HEAD + "whole\nfragm");
  Log("one");
  EXPECT_EQ(Content(), HEAD + "whole\nfragm\n" + Record("one"));
}

TEST_F(Rotation, EndsAFragmentThatAnotherWriterLeftInBetween) {
  Log("one");
  std::ofstream(Path(), std::ios::app) << "fragm";
  Log("two");
  EXPECT_EQ(Content(), HEAD + Record("one") + "fragm\n" + Record("two"));
}

TEST_F(Rotation, AddsNothingBehindAWholeRecordOfAnother) {
  Log("one");
  std::ofstream(Path(), std::ios::app) << "other\n";
  Log("two");
  EXPECT_EQ(Content(), HEAD + Record("one") + "other\n" + Record("two"));
}

TEST_F(Rotation, WritesAHeadAnewOfWhichOnlyAPartWasWritten) {
  for (std::size_t length = 1; length < HEAD.size(); ++length) {
    Write("", HEAD.substr(0, length));
    Log("one");
    EXPECT_EQ(Content(), HEAD + Record("one")) << length;
  }
}

TEST_F(Rotation, KeepsAShortFileThatIsNoPartOfAHead) {
  Write("", "mine");
  Log("one");
  EXPECT_EQ(Content(), "mine\n" + Record("one"));
}

}  // namespace

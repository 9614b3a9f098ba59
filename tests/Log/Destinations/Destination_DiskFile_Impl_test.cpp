#include "Destinations/Destination_DiskFile_Impl.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YBase/TextConversion.h>
#include <YLog/Dispatcher.h>
#include <YLog/Initializer.h>
#include <YLog/Logger.h>
#include <YLog/MessageHeader.h>
#include <YLog/ThreadContext.h>

#include "ModuleMain.h"
#include "support/FakeClock.h"
#include "support/ReadFile.h"
#include "support/RecordingDestination.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using std::chrono::seconds;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

const std::string HEAD = "\xEF\xBB\xBF# Vellatorquine Log version 2.0\n";

class DiskFile : public testing::Test {
 protected:
  DiskFile() { mHeader->SetLoggerName("L"); }

  // Not by `path::wstring`, which depends on the locale.
  static std::wstring Wide(const fs::path& path) { return YBase::UTF8ToWideChar(path.c_str()); }

  YLog::Destination_DiskFile_Impl& Open(const fs::path& path) {
    mDestination.emplace(new YLog::Destination_DiskFile_Impl(Wide(path).c_str()));
    return **mDestination;
  }
  YLog::Destination_DiskFile_Impl& Open() { return Open(Path()); }

  void Log(const std::string& text) { (*mDestination)->LogMessage(text.c_str(), *mHeader); }
  std::string Record(const std::string& text) const { return mHeader->ToString() + (" " + text + "\n"); }

  fs::path Path(const std::string& suffix = "") const { return mDirectory.Path() / ("a.log" + suffix); }
  std::string Content(const std::string& suffix = "") const { return Support::ReadFile(Path(suffix)); }
  void Write(const std::string& suffix, const std::string& content) const {
    std::ofstream(Path(suffix), std::ios::binary) << content;
  }
  /// Prevents the file from being opened again, until `GiveBack`.
  void TakeAway() const {
    fs::remove(Path());
    fs::create_directory(Path());
  }
  void GiveBack() const { fs::remove(Path()); }
  /// Makes writing fail until `Repair`, because the file is full and cannot be rotated.
  void Break() {
    fs::create_directory(Path(".part"));
    (*mDestination)->SetMaximumFileSize(1);
  }
  void Repair() {
    fs::remove(Path(".part"));
    (*mDestination)->SetMaximumFileSize(2'000'000);
  }

  const YLog::Initializer mInitializer;
  Support::FakeClock mClock{std::chrono::sys_days(std::chrono::year(2024) / 3 / 5)};
  const Support::TemporaryDirectory mDirectory;
  const YBase::SmartPtrI<YLog::MessageHeader> mHeader = YLog::CreateMessageHeader();
  std::optional<YBase::SmartPtrI<YLog::Destination_DiskFile_Impl>> mDestination;
};

TEST_F(DiskFile, WritesNothingWhenItIsOpened) {
  Open();
  ASSERT_TRUE(fs::exists(Path()));
  EXPECT_EQ(fs::file_size(Path()), 0U);
}

TEST_F(DiskFile, BeginsWithTheByteOrderMarkAndTheVersionLine) {
  Open();
  Log("one");
  Log("two");
  EXPECT_EQ(Content(), HEAD + Record("one") + Record("two"));
}

TEST_F(DiskFile, AppendsToAnExistingFile) {
  Write("", HEAD + "old\n");
  Open();
  Log("new");
  EXPECT_EQ(Content(), HEAD + "old\n" + Record("new"));
}

TEST_F(DiskFile, WritesTheLinesOfAMessageUnderOneHeader) {
  Open();
  Log("one\r\n\r\ntwo\n");
  EXPECT_EQ(Content(), HEAD + Record("one\ntwo"));
}

TEST_F(DiskFile, WritesOnlyTheHeadForAMessageOfLineBreaks) {
  Open();
  Log("\n\r\n");
  EXPECT_EQ(Content(), HEAD);
}

TEST_F(DiskFile, WritesHeaderAndBlankForAnEmptyMessage) {
  Open();
  Log("");
  EXPECT_EQ(Content(), HEAD + Record(""));
}

TEST_F(DiskFile, WritesTheWholeOfARecordOfAMegabyte) {
  Open();
  const std::string text(1'000'000, 'x');
  Log(text);
  EXPECT_EQ(Content(), HEAD + Record(text));
}

TEST_F(DiskFile, CreatesItsFileReadableByOwnerAndGroupOnly) {
  const mode_t previous = umask(0);
  Open();
  umask(previous);
  struct stat status {};
  ASSERT_EQ(stat(Path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(DiskFile, CreatesMissingFolders) {
  Open(mDirectory.Path() / "one" / "two" / "a.log");
  Log("x");
  EXPECT_EQ(Support::ReadFile(mDirectory.Path() / "one" / "two" / "a.log"), HEAD + Record("x"));
}

TEST_F(DiskFile, AcceptsAFileNameThatIsNotASCII) {
  const fs::path path = mDirectory.Path() / u8"Protokoll-\u00E4\u4E2D.log";
  EXPECT_EQ(Open(path).GetFilePath(), Wide(path));
  Log("x");
  EXPECT_EQ(Support::ReadFile(mDirectory.Path() / "Protokoll-\xC3\xA4\xE4\xB8\xAD.log"), HEAD + Record("x"));
}

TEST_F(DiskFile, FollowsASymbolicLinkAndPutsBackupsBesideIt) {
  fs::create_directory(mDirectory.Path() / "real");
  fs::create_symlink(mDirectory.Path() / "real" / "b.log", Path());
  Open().SetMaximumFileSize(1);
  Log("one");
  Log("two");
  EXPECT_TRUE(fs::is_symlink(Path()));
  EXPECT_EQ(Support::ReadFile(mDirectory.Path() / "real" / "b.log"), HEAD + Record("two"));
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
}

TEST_F(DiskFile, CapsItsLimits) {
  YLog::Destination_DiskFile_Impl& file = Open();
  EXPECT_EQ(file.GetMaximumFileSize(), 2'000'000U);
  EXPECT_EQ(file.GetMaximumFileBackup(), 1U);
  file.SetMaximumFileSize(2'000'000'001);
  file.SetMaximumFileBackup(1000);
  EXPECT_EQ(file.GetMaximumFileSize(), 2'000'000'000U);
  EXPECT_EQ(file.GetMaximumFileBackup(), 256U);
  file.SetMaximumFileSize(1'999'999'999);
  file.SetMaximumFileBackup(255);
  EXPECT_EQ(file.GetMaximumFileSize(), 1'999'999'999U);
  EXPECT_EQ(file.GetMaximumFileBackup(), 255U);
}

// Changes of the path.

TEST_F(DiskFile, DoesNothingWhenTheSamePathIsSetAgain) {
  YLog::Destination_DiskFile_Impl& file = Open();
  fs::remove(Path());
  file.SetFilePath(Path().wstring().c_str());
  EXPECT_FALSE(fs::exists(Path()));
}

TEST_F(DiskFile, ContinuesInAnotherFileWhenItsPathIsSet) {
  YLog::Destination_DiskFile_Impl& file = Open();
  Log("one");
  file.SetFilePath(Path(".other").wstring().c_str());
  Log("two");
  EXPECT_EQ(Content(), HEAD + Record("one"));
  EXPECT_EQ(Content(".other"), HEAD + Record("two"));
}

TEST_F(DiskFile, CountsFromZeroWhenItsNewPathCannotBeOpened) {
  YLog::Destination_DiskFile_Impl& file = Open();
  Write(".file", "");
  file.SetFilePath((Path(".file") / "below").wstring().c_str());
  Log("one");
  Log("two");
  fs::remove(Path(".file"));
  fs::create_directory(Path(".file"));
  mClock.Advance(seconds(300));
  Log("three");
  EXPECT_THAT(Support::ReadFile(Path(".file") / "below"), HasSubstr(" Missed 2 messages since "));
}

// Failures.

TEST_F(DiskFile, CreatesADeletedFileAgainAtOnce) {
  Open();
  Log("one");
  fs::remove(Path());
  Log("two");
  EXPECT_EQ(Content(), HEAD + Record("two"));
}

TEST_F(DiskFile, CreatesANewFileAfterItsFileWasMovedAway) {
  Open();
  Log("one");
  fs::rename(Path(), Path(".moved"));
  Log("two");
  EXPECT_EQ(Content(".moved"), HEAD + Record("one"));
  EXPECT_EQ(Content(), HEAD + Record("two"));
}

TEST_F(DiskFile, SwitchesToAFileThatReplacedItsOwn) {
  Open();
  Log("one");
  Write(".other", HEAD + "other\n");
  fs::rename(Path(".other"), Path());
  Log("two");
  EXPECT_EQ(Content(), HEAD + "other\n" + Record("two"));
}

TEST_F(DiskFile, DropsAndCountsFor300SecondsAfterAFailure) {
  Open();
  Log("one");
  Break();
  Log("failed");
  Repair();
  mClock.Advance(seconds(299));
  Log("dropped");
  EXPECT_EQ(Content(), HEAD + Record("one"));
  mClock.Advance(seconds(1));
  Log("written");
  EXPECT_THAT(Content(), HasSubstr(" Missed 2 messages since "));
  EXPECT_THAT(Content(), EndsWith(Record("written")));
}

TEST_F(DiskFile, WritesAgainAfter300SecondsEvenIfTheWallClockIsSetBack) {
  Open();
  Log("one");
  Break();
  Log("failed");
  Repair();
  mClock.Set(mClock.Now() - std::chrono::days(1));
  mClock.Advance(seconds(299));
  Log("dropped");
  EXPECT_EQ(Content(), HEAD + Record("one"));
  mClock.Advance(seconds(1));
  Log("written");
  EXPECT_THAT(Content(), HasSubstr(" Missed 2 messages since "));
  EXPECT_THAT(Content(), EndsWith(Record("written")));
}

TEST_F(DiskFile, WritesAgainAtOnceIfTheWallClockIsSetForward) {
  Open();
  TakeAway();
  Log("failed");
  GiveBack();
  mClock.Set(mClock.Now() + seconds(300));
  Log("written");
  EXPECT_THAT(Content(), EndsWith(Record("written")));
}

TEST_F(DiskFile, CreatesADeletedFileAgainAtOnceRegardlessOfTheWallClock) {
  mClock.Set(YDataType::Clock::Instant(seconds(100)));
  Open();
  Log("one");
  fs::remove(Path());
  Log("two");
  EXPECT_EQ(Content(), HEAD + Record("two"));
}

TEST_F(DiskFile, KeepsTheReasonOfAFailureUntilItIsReported) {
  Write(".file", "");
  YLog::Destination_DiskFile_Impl& file = Open(Path(".file") / "below");
  fs::remove(Path(".file"));
  fs::create_directory(Path(".file"));
  mClock.Advance(seconds(300));
  Log("nothing was missed so far");
  fs::remove_all(Path(".file"));
  Log("missed");
  fs::create_directory(Path(".file"));
  mClock.Advance(seconds(300));
  Log("written");
  EXPECT_THAT(Support::ReadFile(Path(".file") / "below"),
              HasSubstr(" Missed 1 messages since 2024-03-05 00:00:00.000 due to: "
                        "YFileSystem::Directory::Create: cannot create '"));
  EXPECT_EQ(file.GetFilePath(), Wide(Path(".file") / "below"));
}

TEST_F(DiskFile, ReportsTheNumberTheTimeAndTheReasonOfMissedMessages) {
  Open();
  Log("one");
  Break();
  const std::string start = YDataType::DateTime::Now().ToString();
  for (int message = 0; message < 6; ++message) {
    Log("lost");
    mClock.Advance(seconds(1));
  }
  Repair();
  mClock.Advance(seconds(300));
  Log("written");

  const std::vector<std::string> lines = Support::Lines(Content());
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_THAT(lines[2], HasSubstr("][Log][Error][UID:0][SID:0][OID:0] Missed 6 messages since " + start +
                                  " due to: YFileSystem::FileCopy::Find: "));
  EXPECT_EQ(lines[3] + "\n", Record("written"));
}

TEST_F(DiskFile, WritesTheMissedRecordAfterTheHeadOfAnEmptyFile) {
  Open();
  Log("one");
  Break();
  Log("lost");
  Repair();
  fs::remove(Path());
  mClock.Advance(seconds(300));
  Log("written");
  EXPECT_THAT(Content(), StartsWith(HEAD));
  EXPECT_THAT(Support::Lines(Content()).at(1), HasSubstr(" Missed 1 messages since "));
}

TEST_F(DiskFile, LeavesTheFieldsOfTheMissedRecordInTheThreadsHeader) {
  Open();
  TakeAway();
  Log("lost");
  GiveBack();
  mClock.Advance(seconds(300));
  YLog::MessageHeader& header = *YLog::gModuleMainPtr->GetThreadContext()->GetMessageHeader();
  header.SetMessageID(9);
  Log("written");
  EXPECT_STREQ(header.GetLoggerName(), "Log");
  EXPECT_STREQ(header.GetDispatcherName(), "Error");
  EXPECT_EQ(header.GetMessageID(), 0U);
}

TEST_F(DiskFile, PassesTheHeaderOfItsMissedRecordToLaterDestinations) {
  Open();
  const YBase::SmartPtrI<Support::RecordingDestination> later(new Support::RecordingDestination);
  const auto dispatcher = YLog::CreateDispatcher("Info");
  dispatcher->SetDestinations(Support::Destinations({*mDestination, later}));
  const auto logger = YLog::GetLogger("Orders", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const auto log = [&] { dispatcher->LogMessage(*logger, "text", 7, nullptr, nullptr, 0); };
  TakeAway();
  log();
  GiveBack();
  mClock.Advance(seconds(300));
  log();
  EXPECT_THAT(Content(), HasSubstr("][Orders][Info][0x00000007]"));
  EXPECT_THAT(later->Records().at(0).line, HasSubstr("][Orders][Info][0x00000007]"));
  EXPECT_THAT(later->Records().at(1).line, HasSubstr("][Log][Error][UID:"));
}

TEST_F(DiskFile, ReportsAPeriodOnce) {
  Open();
  TakeAway();
  Log("lost");
  GiveBack();
  mClock.Advance(seconds(300));
  Log("written");
  fs::remove(Path());
  Log("later");
  EXPECT_EQ(Content(), HEAD + Record("later"));
}

TEST_F(DiskFile, WaitsAnotherPeriodWhenARetryFails) {
  Open();
  Log("one");
  Break();
  const std::string start = YDataType::DateTime::Now().ToString();
  Log("failed");
  TakeAway();
  mClock.Advance(seconds(300));
  Log("failed again");
  Repair();
  GiveBack();
  mClock.Advance(seconds(299));
  Log("dropped");
  EXPECT_FALSE(fs::exists(Path()));
  mClock.Advance(seconds(1));
  Log("written");
  EXPECT_THAT(Content(),
              HasSubstr(" Missed 3 messages since " + start + " due to: YFileSystem::FileCopy::Find: "));
}

TEST_F(DiskFile, DroppedMessagesDoNotProlongThePeriod) {
  Open();
  TakeAway();
  Log("failed");
  GiveBack();
  for (int refused = 0; refused < 5; ++refused) {
    mClock.Advance(seconds(50));
    Log("refused");
  }
  mClock.Advance(seconds(50));
  Log("written");
  EXPECT_THAT(Content(), HasSubstr(" Missed 6 messages since "));
}

TEST_F(DiskFile, ReportsNoTimeAndNoReasonIfOnlyReopeningFailed) {
  Open();
  TakeAway();
  Log("lost");
  GiveBack();
  mClock.Advance(seconds(300));
  Log("written");
  EXPECT_THAT(Content(), HasSubstr(" Missed 1 messages since 1970-01-01 00:00:00.000 due to: \n"));
}

TEST_F(DiskFile, CountsAMessageIfTheFolderIsGone) {
  const fs::path folder = mDirectory.Path() / "folder";
  Open(folder / "a.log");
  fs::remove_all(folder);
  Log("lost");
  EXPECT_FALSE(fs::exists(folder));
  fs::create_directory(folder);
  mClock.Advance(seconds(300));
  Log("written");
  EXPECT_THAT(Support::ReadFile(folder / "a.log"), HasSubstr(" Missed 1 messages since "));
}

TEST_F(DiskFile, RefusesAPipeInPlaceOfItsFileWithoutBlocking) {
  ASSERT_EQ(mkfifo(Path().c_str(), 0600), 0);
  Open();
  Log("lost");
  GiveBack();
  mClock.Advance(seconds(300));
  Log("written");
  EXPECT_THAT(Content(), HasSubstr(" Missed 1 messages since "));
}

TEST_F(DiskFile, ReportsARaceConditionWhenItsLimitIsZero) {
  YLog::Destination_DiskFile_Impl& file = Open();
  file.SetMaximumFileSize(0);
  Log("lost");
  file.SetMaximumFileSize(2000);
  mClock.Advance(seconds(300));
  Log("written");
  EXPECT_THAT(Content(), HasSubstr(" Missed 1 messages since "));
  EXPECT_THAT(
      Content(),
      HasSubstr(" due to: YLog::Destination_DiskFile_Impl::WriteMessage: detected a race condition with '" +
                Path().string() + "'. Maximum file size is 0 bytes.\n"));
}

}  // namespace

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>

#include "Log/Destinations/RotationTest.h"
#include "support/ChildProcess.h"
#include "support/FakeClock.h"
#include "support/FaultyFileOperations.h"
#include "support/FileCallHook.h"
#include "support/FileLock.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr unsigned INCOMPLETE = 0200;
constexpr unsigned COMPLETE = 0640;

/// Rotations that find what others have left, and rotations that others disturb.
class InterruptedRotation : public RotationTest {
 protected:
  InterruptedRotation() { mDestination->SetMaximumFileBackup(3); }

  void LogIntoFullFile(const std::string& text) {
    mDestination->SetMaximumFileSize(1);
    Log(text);
  }
  void ExpectNothingWasMissed() {
    Log("last");
    EXPECT_THAT(Content(), testing::Not(HasSubstr("Missed")));
    EXPECT_THAT(Content(), testing::EndsWith(Record("last")));
  }

  Support::FakeClock mClock{std::chrono::sys_days(std::chrono::year(2024) / 3 / 5)};
};

TEST_F(InterruptedRotation, IsFinishedIfTheFileIsEmpty) {
  WriteCopy(HEAD + "whole\n", COMPLETE);
  WriteBackups(1);
  Log("one");
  EXPECT_EQ(Content(".bak00"), HEAD + "whole\n");
  EXPECT_EQ(Content(".bak01"), "b0");
  EXPECT_FALSE(IsCopyLeft());
  EXPECT_EQ(Content(), HEAD + Record("one"));
}

TEST_F(InterruptedRotation, IsFinishedEvenIfOthersHaveWrittenToTheEmptiedFile) {
  WriteCopy(HEAD + "whole\n", COMPLETE);
  Write("", HEAD + "through another name\n");
  LogIntoFullFile("one");
  EXPECT_EQ(Content(".bak01"), HEAD + "whole\n");
  EXPECT_EQ(Content(".bak00"), HEAD + "through another name\n");
  EXPECT_EQ(Content(), HEAD + Record("one"));
}

TEST_F(InterruptedRotation, IsFinishedIfTheFileHasGrownToTheLengthOfTheCopyWithOtherBytes) {
  WriteCopy(HEAD + "whole a\n", COMPLETE);
  Write("", HEAD + "whole b\n");
  LogIntoFullFile("one");
  EXPECT_EQ(Content(".bak01"), HEAD + "whole a\n");
  EXPECT_EQ(Content(".bak00"), HEAD + "whole b\n");
}

TEST_F(InterruptedRotation, IsFinishedIfOnlyBytesAfterTheFirstPieceDiffer) {
  const std::string common(300'000, 'x');
  WriteCopy(common + "a", COMPLETE);
  Write("", common + "b");
  LogIntoFullFile("one");
  EXPECT_EQ(Content(".bak01"), common + "a");
  EXPECT_EQ(Content(".bak00"), common + "b");
}

TEST_F(InterruptedRotation, CopyIsDiscardedIfTheFileBeginsWithIt) {
  Log("one");
  WriteCopy(Content(), COMPLETE);
  Log("two");
  LogIntoFullFile("three");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one") + Record("two"));
  EXPECT_FALSE(Exists(".bak01"));
  EXPECT_FALSE(IsCopyLeft());
}

TEST_F(InterruptedRotation, IncompleteCopyIsDiscarded) {
  Log("one");
  WriteCopy("a part of", INCOMPLETE);
  LogIntoFullFile("two");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_FALSE(Exists(".bak01"));
}

TEST_F(InterruptedRotation, IncompleteCopyIsDiscardedEvenIfTheFileWasMovedAway) {
  Log("one");
  WriteCopy(HEAD + "torn", INCOMPLETE);
  fs::rename(Path(), Path(".moved"));
  Log("two");
  EXPECT_FALSE(Exists(".bak00"));
  EXPECT_FALSE(IsCopyLeft());
  EXPECT_EQ(Content(), HEAD + Record("two"));
}

TEST_F(InterruptedRotation, EmptyCopyIsDiscarded) {
  WriteCopy("", COMPLETE);
  Log("one");
  EXPECT_FALSE(Exists(".bak00"));
  EXPECT_FALSE(IsCopyLeft());
}

TEST_F(InterruptedRotation, DoesNotKeepRecordsOutOfAnEmptyFileIfTheCopyCannotBeRenamed) {
  WriteCopy(HEAD + "whole\n", COMPLETE);
  {
    Support::FaultyFileOperations faults;
    faults.mRename.Inject(EPERM);
    Log("one");
    EXPECT_TRUE(faults.mRename.HasHappened());
  }
  EXPECT_EQ(Content(), HEAD + Record("one"));
  EXPECT_EQ(Content(".part"), HEAD + "whole\n");
  LogIntoFullFile("two");
  EXPECT_EQ(Content(".bak01"), HEAD + "whole\n");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_EQ(Content(), HEAD + Record("two"));
}

TEST_F(InterruptedRotation, CopyThatCannotBeReadIsKept) {
  WriteCopy(HEAD + "whole\n", COMPLETE);
  Write("", HEAD + "other\n");
  Support::FaultyFileOperations faults;
  faults.mReadAt.Inject(EIO);
  LogIntoFullFile("lost");
  EXPECT_TRUE(faults.mReadAt.HasHappened());
  EXPECT_EQ(Content(".part"), HEAD + "whole\n");
  EXPECT_EQ(Content(), HEAD + "other\n");
}

// Something else has the name of the copy.

TEST_F(InterruptedRotation, ReplacesALinkWithTheNameOfTheCopyAndDoesNotFollowIt) {
  Write(".victim", "untouched");
  for (const char* target : {"a.log.victim", "nothing"}) {
    fs::create_symlink(target, Path(".part"));
    LogIntoFullFile("one");
    LogIntoFullFile("two");
    EXPECT_EQ(Content(".victim"), "untouched");
    EXPECT_FALSE(IsCopyLeft());
    EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  }
  EXPECT_FALSE(fs::exists(mDirectory.Path() / "nothing"));
}

TEST_F(InterruptedRotation, DeletesAHardLinkToTheFileWithTheNameOfTheCopy) {
  Log("one");
  fs::create_hard_link(Path(), Path(".part"));
  LogIntoFullFile("two");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_EQ(Content(), HEAD + Record("two"));
  EXPECT_FALSE(IsCopyLeft());
}

TEST_F(InterruptedRotation, ReplacesAPipeWithTheNameOfTheCopyWithoutWaitingForItsReader) {
  Log("one");
  ASSERT_EQ(mkfifo(Path(".part").c_str(), 0600), 0);
  LogIntoFullFile("two");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
}

TEST_F(InterruptedRotation, FailsBeforeItChangesAnythingIfADirectoryHasTheNameOfTheCopy) {
  Log("one");
  WriteBackups(3);
  fs::create_directory(Path(".part"));
  LogIntoFullFile("lost");
  EXPECT_EQ(Content(), HEAD + Record("one"));
  for (int number = 0; number < 3; ++number) {
    EXPECT_EQ(Content(BackupSuffix(number)), "b" + std::to_string(number));
  }
}

// The process that makes the copy is alive.

TEST_F(InterruptedRotation, WaitsForACopyThatAnotherProcessIsMaking) {
  Log("one");
  WriteCopy(HEAD + "torn", INCOMPLETE);
  const int maker = open(Path(".part").c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_EQ(flock(maker, LOCK_EX), 0);
  Support::ChildProcess writer([&] {
    // The lock belongs to the open file, which the child inherits.
    close(maker);
    LogIntoFullFile("two");
    return 0;
  });
  EXPECT_TRUE(Support::WaitsForLock(writer.ID()));
  fs::permissions(Path(".part"), fs::perms(COMPLETE));
  fs::rename(Path(".part"), Path(".bak00"));
  close(maker);
  EXPECT_EQ(writer.Wait(), 0);
  EXPECT_EQ(Content(".bak01"), HEAD + "torn") << "the other process has renamed it to a backup";
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
}

TEST_F(InterruptedRotation, ExaminesACopyAgainThatWasCompletedWhileItWaited) {
  WriteCopy(HEAD + "whole\n", INCOMPLETE);
  const int maker = open(Path(".part").c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_EQ(flock(maker, LOCK_EX), 0);
  Support::ChildProcess writer([&] {
    close(maker);
    Log("one");
    return 0;
  });
  EXPECT_TRUE(Support::WaitsForLock(writer.ID()));
  fs::permissions(Path(".part"), fs::perms(COMPLETE));
  close(maker);
  EXPECT_EQ(writer.Wait(), 0);
  EXPECT_EQ(Content(".bak00"), HEAD + "whole\n");
}

TEST_F(InterruptedRotation, LocksItsCopyForAsLongAsItHasItsTemporaryName) {
  Log("one");
  int calls = 0;
  int seenFree = 0;
  bool created = false;
  {
    const Support::FileCallHook hook([&](std::string_view call) {
      // The lock is taken after the opening, so the call that takes it is left out.
      if (IsCopyLeft() && call != "lock") {
        created = true;
        ++calls;
        if (Support::IsFree(Path(".part"))) ++seenFree;
      }
      return 0;
    });
    LogIntoFullFile("two");
  }
  EXPECT_TRUE(created);
  EXPECT_GT(calls, 5);
  EXPECT_EQ(seenFree, 0);
}

// The log or the copy is moved or deleted during a rotation.

/// Runs an action once, before the call of that name that follows `skipped` calls of the same name.
class Meanwhile {
 public:
  Meanwhile(std::string_view call, int skipped, std::function<void()> action)
      : mHook([this, call, skipped, action](std::string_view made) {
          if (made == call && mSeen++ == skipped) action();
          return 0;
        }),
        mSkipped(skipped) {}
  bool HasHappened() const { return mSeen > mSkipped; }

 private:
  int mSeen = 0;
  Support::FileCallHook mHook;
  const int mSkipped;
};

TEST_F(InterruptedRotation, BeginsANewFileAtOnceIfTheLogIsMovedAwayBeforeItIsEmptied) {
  Log("one");
  {
    const Meanwhile meanwhile("change permissions", 0, [&] { fs::rename(Path(), Path(".moved")); });
    LogIntoFullFile("two");
    EXPECT_TRUE(meanwhile.HasHappened());
  }
  EXPECT_EQ(Content(".moved"), HEAD + Record("one"));
  EXPECT_EQ(Content(), HEAD + Record("two"));
  EXPECT_FALSE(Exists(".bak00"));
  EXPECT_FALSE(IsCopyLeft());
  ExpectNothingWasMissed();
}

TEST_F(InterruptedRotation, BeginsANewFileAtOnceIfTheLogIsDeletedBeforeItIsEmptied) {
  Log("one");
  {
    const Meanwhile meanwhile("change permissions", 0, [&] { fs::remove(Path()); });
    LogIntoFullFile("two");
    EXPECT_TRUE(meanwhile.HasHappened());
  }
  EXPECT_EQ(Content(), HEAD + Record("two"));
  ExpectNothingWasMissed();
}

TEST_F(InterruptedRotation, StartsOverIfAnotherProcessHasDeletedItsCopy) {
  Log("one");
  {
    const Meanwhile meanwhile("change permissions", 0, [&] { fs::remove(Path(".part")); });
    LogIntoFullFile("two");
    EXPECT_TRUE(meanwhile.HasHappened());
  }
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_EQ(Content(), HEAD + Record("two"));
}

TEST_F(InterruptedRotation, StartsOverIfItsCopyWasDeletedBeforeItWasLocked) {
  Log("one");
  {
    // The first lock is the log's own.
    const Meanwhile meanwhile("lock", 1, [&] { fs::remove(Path(".part")); });
    LogIntoFullFile("two");
    EXPECT_TRUE(meanwhile.HasHappened());
  }
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_EQ(Content(), HEAD + Record("two"));
}

TEST_F(InterruptedRotation, AcceptsThatAnotherProcessHasAlreadyRenamedTheCopy) {
  Log("one");
  {
    const Meanwhile meanwhile("rename", 0, [&] { fs::rename(Path(".part"), Path(".bak00")); });
    LogIntoFullFile("two");
    EXPECT_TRUE(meanwhile.HasHappened());
  }
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_EQ(Content(), HEAD + Record("two"));
}

// Failures during a rotation.

TEST_F(InterruptedRotation, LeavesNoCopyIfTheFileCannotBeEmptied) {
  Log("one");
  {
    Support::FaultyFileOperations faults;
    faults.mTruncate.Inject(EIO);
    LogIntoFullFile("lost");
    EXPECT_TRUE(faults.mTruncate.HasHappened());
  }
  EXPECT_EQ(Content(), HEAD + Record("one"));
  EXPECT_FALSE(Exists(".bak00"));
  EXPECT_FALSE(IsCopyLeft());
}

TEST_F(InterruptedRotation, DoublesNothingIfNeitherTheFileCanBeEmptiedNorTheCopyDeleted) {
  Log("one");
  {
    Support::FaultyFileOperations faults;
    faults.mTruncate.Inject(EIO);
    faults.mUnlink.Inject(EIO);
    LogIntoFullFile("lost");
    EXPECT_TRUE(faults.mTruncate.HasHappened() && faults.mUnlink.HasHappened());
  }
  EXPECT_TRUE(IsCopyLeft());
  mClock.Advance(std::chrono::seconds(300));
  LogIntoFullFile("two");
  EXPECT_THAT(Content(".bak00"), testing::StartsWith(HEAD + Record("one")));
  EXPECT_FALSE(Exists(".bak01"));
  EXPECT_FALSE(IsCopyLeft());
}

TEST_F(InterruptedRotation, KeepsTheCopyOfAnEmptiedFileIfItCannotBeRenamed) {
  Log("one");
  {
    Support::FaultyFileOperations faults;
    faults.mRename.Inject(EIO);
    LogIntoFullFile("lost");
    EXPECT_TRUE(faults.mRename.HasHappened());
  }
  EXPECT_EQ(Content(".part"), HEAD + Record("one"));
  mDestination->SetMaximumFileSize(10000);
  mClock.Advance(std::chrono::seconds(300));
  Log("two");
  EXPECT_EQ(Content(".bak00"), HEAD + Record("one"));
  EXPECT_THAT(Content(), HasSubstr(" Missed 1 messages since "));
}

}  // namespace

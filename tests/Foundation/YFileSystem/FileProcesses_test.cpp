#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <vector>

#include "UpdateableFileTest.h"
#include "support/ChildProcess.h"
#include "support/Descriptors.h"
#include "support/FileLock.h"

namespace {

namespace fs = std::filesystem;

// The write lock.

class FileLock : public UpdateableFileTest {
 protected:
  /// Whether another process can lock it.
  bool IsFreeForOthers() const {
    return Support::ChildProcess([this] { return Support::IsFree(mPath) ? 1 : 0; }).Wait() == 1;
  }

  const FilePtr mFile = Open();
};

TEST_F(FileLock, ExcludesOtherProcessesWhileItIsHeld) {
  EXPECT_TRUE(IsFreeForOthers());
  {
    const WriteLock lock(*mFile);
    EXPECT_FALSE(IsFreeForOthers());
  }
  EXPECT_TRUE(IsFreeForOthers());
}

TEST_F(FileLock, ExcludesOtherInstancesInTheProcess) {
  const WriteLock lock(*mFile);
  EXPECT_FALSE(Support::IsFree(mPath));
}

TEST_F(FileLock, SurvivesTheClosingOfAnotherDescriptorOfTheFile) {
  const WriteLock lock(*mFile);
  close(open(mPath.c_str(), O_RDWR | O_CLOEXEC));
  { const FilePtr other = Open(); }
  EXPECT_FALSE(IsFreeForOthers());
}

TEST_F(FileLock, IsFreeOnceItsHolderIsKilled) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  Support::ChildProcess child([&] {
    const WriteLock lock(*mFile);
    EXPECT_EQ(write(ends[1], "x", 1), 1);
    return pause();
  });
  char locked;
  ASSERT_EQ(read(ends[0], &locked, 1), 1);
  EXPECT_FALSE(Support::IsFree(mPath));
  child.Kill();
  EXPECT_TRUE(Support::IsFree(mPath));
  close(ends[0]);
  close(ends[1]);
}

TEST_F(FileLock, KeepsTheRecordsOfManyProcessesIntact) {
  constexpr int PROCESSES = 4;
  constexpr int RECORDS = 300;
  std::vector<Support::ChildProcess> children;
  for (int process = 0; process < PROCESSES; ++process) {
    children.emplace_back([this, process] {
      const FilePtr file = Open();
      const std::string text(100 + static_cast<unsigned>(process), static_cast<char>('a' + process));
      for (int record = 0; record < RECORDS; ++record) {
        const WriteLock lock(*file);
        const std::uint64_t size = file->QueryPath().mSize;
        file->Append(size, text + "\n");
        if (file->QueryPath().mSize != size + text.size() + 1) return 1;
      }
      return 0;
    });
  }
  for (Support::ChildProcess& child : children) EXPECT_EQ(child.Wait(), 0);
  std::vector<int> counts(PROCESSES);
  for (const std::string& line : Support::Lines(Content())) {
    const int process = line.front() - 'a';
    ++counts[static_cast<unsigned>(process)];
    EXPECT_EQ(line, std::string(100 + static_cast<unsigned>(process), line.front()));
  }
  EXPECT_THAT(counts, testing::Each(RECORDS));
}

// A fork.

class ForkedFile : public UpdateableFileTest {
 protected:
  /// Runs expectations in a child. If they fail there, the test fails.
  static void InChild(const std::function<void()>& work) {
    Support::ChildProcess child([&] {
      work();
      return HasFailure() ? 1 : 0;
    });
    EXPECT_EQ(child.Wait(), 0) << "in the child, see above";
  }

  const FilePtr mFile = Open();
};

TEST_F(ForkedFile, IsNotOpenInAChildThatDoesNotNeedIt) {
  ASSERT_EQ(Support::DescriptorsOf(mPath).size(), 1U);
  InChild([&] { EXPECT_EQ(Support::DescriptorsOf(mPath).size(), 0U); });
  EXPECT_EQ(Support::DescriptorsOf(mPath).size(), 1U);
}

TEST_F(ForkedFile, IsReopenedByAChildThatNeedsIt) {
  Append(*mFile, "parent ");
  InChild([&] {
    Append(*mFile, "child ");
    EXPECT_EQ(Support::DescriptorsOf(mPath).size(), 1U);
  });
  Append(*mFile, "parent");
  EXPECT_EQ(Content(), "parent child parent");
}

TEST_F(ForkedFile, IsReopenedWhateverTheChildDoesFirst) {
  Write("0123");
  InChild([&] { EXPECT_EQ(mFile->QueryPath().mSize, 4U); });
  InChild([&] { EXPECT_EQ(ReadAll(*mFile), "0123"); });
  InChild([&] {
    const WriteLock lock(*mFile);
    EXPECT_TRUE(mFile->QueryPath().mIsThisFile);
  });
}

TEST_F(ForkedFile, KeepsItsPositionInAChild) {
  Write("0123");
  mFile->SetPosition(2);
  InChild([&] {
    char byte = 0;
    EXPECT_EQ(mFile->Read(&byte, 1), 1U);
    EXPECT_EQ(byte, '2');
  });
}

TEST_F(ForkedFile, IsTheCurrentFileAtThePathWhenAChildOpensIt) {
  Append(*mFile, "old");
  fs::rename(mPath, mDirectory.Path() / "moved");
  InChild([&] {
    EXPECT_TRUE(mFile->QueryPath().mIsThisFile);
    Append(*mFile, "new");
  });
  EXPECT_EQ(Content(), "new");
  EXPECT_EQ(Support::ReadFile(mDirectory.Path() / "moved"), "old");
  EXPECT_FALSE(mFile->QueryPath().mIsThisFile);
}

TEST_F(ForkedFile, IsClosedOnExecAndHasTheUsualModeWhenAChildOpensIt) {
  fs::remove(mPath);
  InChild([&] {
    umask(0);
    Append(*mFile, "x");
    const std::vector<int> descriptors = Support::DescriptorsOf(mPath);
    ASSERT_EQ(descriptors.size(), 1U);
    EXPECT_EQ(fcntl(descriptors.front(), F_GETFD), FD_CLOEXEC);
  });
  EXPECT_EQ(fs::status(mPath).permissions(), fs::perms(0640));
}

TEST_F(ForkedFile, ThrowsInAChildThatCannotOpenIt) {
  fs::remove(mPath);
  fs::create_directory(mPath);
  InChild([&] { EXPECT_EQ(ThrownText([&] { Append(*mFile, "x"); }), OpeningFailure("Is a directory")); });
}

TEST_F(ForkedFile, MakesAChildWaitForItsParent) {
  std::optional<Support::ChildProcess> child;
  {
    const WriteLock lock(*mFile);
    child.emplace([&] {
      const WriteLock own(*mFile);
      return Content() == "parent" ? 0 : 1;
    });
    EXPECT_TRUE(Support::WaitsForLock(child->ID()));
    mFile->Append(0, "parent");
  }
  EXPECT_EQ(child->Wait(), 0);
}

TEST_F(ForkedFile, StaysLockedWhenAChildEnds) {
  const WriteLock lock(*mFile);
  InChild([] {});
  EXPECT_FALSE(Support::IsFree(mPath));
}

TEST_F(ForkedFile, StaysLockedWhenAChildReleasesIt) {
  FilePtr file = Open(mPath);
  const WriteLock lock(*mFile);
  InChild([&] { file = nullptr; });
  EXPECT_FALSE(Support::IsFree(mPath));
}

TEST_F(ForkedFile, StaysLockedWhenAChildUnlocksWithoutHoldingTheLock) {
  std::optional<WriteLock> lock(std::in_place, *mFile);
  InChild([&] { lock.reset(); });
  EXPECT_FALSE(Support::IsFree(mPath));
}

TEST_F(ForkedFile, IsUnlockedOnceItsHolderIsKilledEvenIfAChildLives) {
  int alive[2];
  int release[2];
  ASSERT_EQ(pipe(alive), 0);
  ASSERT_EQ(pipe(release), 0);
  Support::ChildProcess holder([&] {
    const WriteLock lock(*mFile);
    Support::ChildProcess grandchild([&] {
      close(release[1]);
      EXPECT_EQ(write(alive[1], "x", 1), 1);
      // Until the test ends it.
      char end;
      return static_cast<int>(read(release[0], &end, 1));
    });
    return pause();
  });
  char byte;
  ASSERT_EQ(read(alive[0], &byte, 1), 1);
  EXPECT_FALSE(Support::IsFree(mPath));
  holder.Kill();
  EXPECT_TRUE(Support::IsFree(mPath));
  for (const int end : {alive[0], alive[1], release[0], release[1]}) close(end);
}

TEST_F(ForkedFile, LeavesItsNumberToOthersOnceItIsReleased) {
  const fs::path path = mDirectory.Path() / "gone";
  FilePtr gone = Open(path);
  const std::vector<int> numbers = Support::DescriptorsOf(path);
  gone = nullptr;
  const int other = open("/dev/null", O_RDONLY | O_CLOEXEC);
  ASSERT_THAT(numbers, testing::ElementsAre(other));
  InChild([&] { EXPECT_GE(fcntl(other, F_GETFD), 0); });
  close(other);
}

TEST_F(ForkedFile, IsReopenedByAGrandchild) {
  InChild([&] {
    Append(*mFile, "child ");
    InChild([&] {
      EXPECT_EQ(Support::DescriptorsOf(mPath).size(), 0U);
      Append(*mFile, "grandchild ");
    });
    Append(*mFile, "child");
  });
  EXPECT_EQ(Content(), "child grandchild child");
}

}  // namespace

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/DiskFileClient.h"
#include "support/FileLock.h"
#include "support/LogFiles.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned long LIMIT = 32768;
constexpr int WRITERS = 4;
constexpr int ROUNDS = 20;
constexpr int ROUNDS_WITH_MOVES = 10;
constexpr int KILLS_PER_ROUND = 10;
constexpr int WRITERS_PER_ROUND = WRITERS + KILLS_PER_ROUND;
// Few enough that a round cannot exceed 256 rotations, however long a writer lives.
constexpr int RECORDS_PER_WRITER = 800;

/// The number of acknowledged records of each writer, in memory that outlives the writer.
class Acknowledged {
 public:
  Acknowledged()
      : mpCounts(static_cast<Counts*>(
            mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}
  ~Acknowledged() { munmap(mpCounts, sizeof(Counts)); }
  Acknowledged(const Acknowledged&) = delete;
  Acknowledged& operator=(const Acknowledged&) = delete;

  std::atomic<int>& operator[](int writer) { return (*mpCounts)[static_cast<std::size_t>(writer)]; }

 private:
  using Counts = std::array<std::atomic<int>, WRITERS_PER_ROUND>;
  Counts* mpCounts;
};

std::string Text(int writer, int number) {
  char begin[64];
  std::snprintf(begin, sizeof begin, "writer %d number %d ", writer, number);
  return begin + std::string(150, 'x') + " end";
}

int WriteUntilKilled(const fs::path& path, int writer, std::atomic<int>& acknowledged) {
  Support::DiskFileClient client(path, {.mSize = LIMIT, .mBackups = 256});
  for (int number = 0; number < RECORDS_PER_WRITER; ++number) {
    client.Log(Text(writer, number).c_str());
    acknowledged.store(number + 1);
  }
  while (true) pause();
}

class KilledWriters : public testing::Test {
 protected:
  void RunRound(const fs::path& path) {
    std::vector<Support::ChildProcess> children;
    for (int number = 0; number < KILLS_PER_ROUND; ++number) {
      while (children.size() < WRITERS) Start(path, children);
      WaitForAMoment(path, number);
      // The last kill of a round is of all writers at once, so the one that is rotating is among them.
      if (number == KILLS_PER_ROUND - 1 && !mbMovesTheLog) {
        for (const Support::ChildProcess& child : children) kill(child.ID(), SIGKILL);
      }
      const std::size_t victim = mRandom() % children.size();
      if (mbMovesTheLog) {
        KillAndMoveTheLog(path, children, victim);
      } else {
        children[victim].Kill();
      }
      std::vector<Support::ChildProcess> others;
      for (std::size_t child = 0; child < children.size(); ++child) {
        if (child != victim) others.push_back(std::move(children[child]));
      }
      children.swap(others);
    }
    for (Support::ChildProcess& child : children) child.Kill();
    if (fs::exists(path.string() + ".part")) ++mKillsInsideARotation;
    if (MayBecomeABackupThoughNothingWasEmptied(path.string() + ".part", mMoved)) mbMayHaveDoubled = true;
  }

  /// All writers are stopped meanwhile, so that the files can be examined as the kill has left them.
  void KillAndMoveTheLog(const fs::path& path, std::vector<Support::ChildProcess>& children,
                         std::size_t victim) {
    for (const Support::ChildProcess& child : children) Stop(child.ID());
    const fs::path copy = path.string() + ".part";
    const bool wasFree = !fs::exists(copy) || Support::IsFree(copy);
    children[victim].Kill();
    // A copy that was locked before and is free now was made by the victim.
    const bool isLeft = !wasFree && Support::IsFree(copy);
    if (isLeft) ++mCopiesLeft;
    std::vector<fs::path> logs = mMoved;
    logs.push_back(path);
    if (isLeft && MayBecomeABackupThoughNothingWasEmptied(copy, logs)) mbMayHaveDoubled = true;
    if (fs::exists(path)) {
      mMoved.push_back(path.string() + ".moved" + std::to_string(mMoved.size()));
      fs::rename(path, mMoved.back());
    }
    for (std::size_t child = 0; child < children.size(); ++child) {
      if (child != victim) kill(children[child].ID(), SIGCONT);
    }
  }
  /// Whether the copy is complete, and one of the logs begins with it.
  static bool MayBecomeABackupThoughNothingWasEmptied(const fs::path& copy,
                                                      const std::vector<fs::path>& logs) {
    constexpr auto ANY_READ = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
    if (!fs::exists(copy) || (fs::status(copy).permissions() & ANY_READ) == fs::perms::none) return false;
    const std::string content = Support::ReadFile(copy);
    return std::any_of(logs.begin(), logs.end(),
                       [&](const fs::path& log) { return Support::ReadFile(log).starts_with(content); });
  }
  static void Stop(pid_t child) {
    kill(child, SIGSTOP);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, WUNTRACED), child);
    ASSERT_TRUE(WIFSTOPPED(status));
  }

  void RunRounds(int rounds) {
    // If no kill was inside a rotation, up to five times as many rounds.
    for (int round = 0; round < rounds || (mKillsInsideARotation == 0 && round < 5 * rounds); ++round) {
      const Support::TemporaryDirectory directory;
      const fs::path path = directory.Path() / "shared.log";
      mStarted = 0;
      for (int writer = 0; writer < WRITERS_PER_ROUND; ++writer) mAcknowledged[writer] = 0;
      mMoved.clear();
      mbMayHaveDoubled = false;
      RunRound(path);
      CheckRound(path);
    }
  }

  void CheckRound(const fs::path& path) {
    mFragments = 0;
    {
      // A last writer finishes the rotation that a killed one may have left.
      Support::DiskFileClient client(path, {.mSize = LIMIT, .mBackups = 256});
      client.Log("last");
    }
    Support::LogFiles files = Support::ReadLogFiles(path);
    ASSERT_LT(files.mBackups, 256U);
    EXPECT_EQ(files.mFilesWithoutHead, 0U);
    ASSERT_EQ(Support::TextOf(files.mLines.back()), "last");
    files.mLines.pop_back();
    for (const fs::path& moved : mMoved) {
      for (std::string& line : Support::ReadLogFiles(moved).mLines) files.mLines.push_back(std::move(line));
    }
    ExpectNothingAcknowledgedIsMissingOrDoubled(files.mLines);
    // At most one torn record for each writer that was killed.
    EXPECT_LE(mFragments, WRITERS_PER_ROUND);
    mFragmentsOfAllRounds += mFragments;
  }

  void Start(const fs::path& path, std::vector<Support::ChildProcess>& children) {
    const int writer = mStarted++;
    children.emplace_back(
        [this, &path, writer] { return WriteUntilKilled(path, writer, mAcknowledged[writer]); });
  }

  /// Waits for a random number of records and, before the last kill of a round, also for a rotation.
  void WaitForAMoment(const fs::path& path, int kill) {
    const int writer = mStarted - 1;
    const int target = static_cast<int>(mRandom() % 300);
    while (mAcknowledged[writer] < target) std::this_thread::yield();
    if (kill < KILLS_PER_ROUND - 1) return;
    // Ends when the writer has written all its records, after which there may be no rotation.
    while (!fs::exists(path.string() + ".part") && mAcknowledged[writer] < RECORDS_PER_WRITER) {
      std::this_thread::yield();
    }
  }

  void ExpectNothingAcknowledgedIsMissingOrDoubled(const std::vector<std::string>& lines) {
    std::vector<std::vector<int>> seen(WRITERS_PER_ROUND, std::vector<int>(RECORDS_PER_WRITER, 0));
    for (const std::string& line : lines) {
      int writer = -1;
      int number = -1;
      const std::string text = Support::TextOf(line);
      std::sscanf(text.c_str(), "writer %d number %d ", &writer, &number);
      if (writer >= 0 && number >= 0 && text == Text(writer, number)) {
        ++seen[static_cast<std::size_t>(writer)][static_cast<std::size_t>(number)];
      } else {
        ++mFragments;
      }
    }
    int missing = 0;
    int doubled = 0;
    for (int writer = 0; writer < mStarted; ++writer) {
      for (int number = 0; number < RECORDS_PER_WRITER; ++number) {
        const int count = seen[static_cast<std::size_t>(writer)][static_cast<std::size_t>(number)];
        // The record that was not yet acknowledged when its writer was killed may be there or not.
        missing += count < (number < mAcknowledged[writer] ? 1 : 0) ? 1 : 0;
        doubled += count > (number <= mAcknowledged[writer] ? 1 : 0) ? 1 : 0;
      }
    }
    EXPECT_EQ(missing, 0);
    if (mbMayHaveDoubled) {
      ++mRoundsInTheWindow;
      mDoubledInTheWindow += doubled;
    } else {
      EXPECT_EQ(doubled, 0);
    }
  }

  // A different seed for each run of `--gtest_repeat` with `--gtest_shuffle`.
  std::mt19937 mRandom{20240305U + static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed())};
  Acknowledged mAcknowledged;
  int mStarted = 0;
  int mFragments = 0;
  int mFragmentsOfAllRounds = 0;
  int mKillsInsideARotation = 0;

  bool mbMovesTheLog = false;
  std::vector<fs::path> mMoved;
  int mCopiesLeft = 0;
  // A kill between completing a copy and emptying the log doubles its records if the log is moved as well.
  bool mbMayHaveDoubled = false;
  int mRoundsInTheWindow = 0;
  int mDoubledInTheWindow = 0;
};

TEST_F(KilledWriters, LoseAndDoubleNoAcknowledgedRecordAndDamageNoOther) {
  RunRounds(ROUNDS);
  EXPECT_GT(mKillsInsideARotation, 0);
  RecordProperty("kills_inside_a_rotation", mKillsInsideARotation);
  RecordProperty("torn_records_set_apart", mFragmentsOfAllRounds);
}

TEST_F(KilledWriters, LoseNothingEvenIfTheLogIsMovedAwayAtEachKill) {
  mbMovesTheLog = true;
  RunRounds(ROUNDS_WITH_MOVES);
  EXPECT_GT(mCopiesLeft + mKillsInsideARotation, 0);
  RecordProperty("copies_left_by_a_kill", mCopiesLeft);
  RecordProperty("rounds_with_a_kill_in_the_window", mRoundsInTheWindow);
  RecordProperty("records_doubled_there", mDoubledInTheWindow);
}

}  // namespace

#include <sys/mman.h>
#include <unistd.h>

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
#include "support/LogFiles.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned long LIMIT = 32768;
constexpr int WRITERS = 4;
constexpr int ROUNDS = 20;
constexpr int KILLS_PER_ROUND = 10;
constexpr int WRITERS_PER_ROUND = WRITERS + KILLS_PER_ROUND;
// So many that a round cannot pass 256 rotations, however long a writer lives.
constexpr int RECORDS_PER_WRITER = 800;

/// How many of its records each writer has been told are safe: in memory that outlives it.
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
      // At the end all at once, so that the one that is rotating is among them.
      if (number == KILLS_PER_ROUND - 1) {
        for (const Support::ChildProcess& child : children) kill(child.ID(), SIGKILL);
      }
      const std::size_t victim = mRandom() % children.size();
      children[victim].Kill();
      std::vector<Support::ChildProcess> others;
      for (std::size_t child = 0; child < children.size(); ++child) {
        if (child != victim) others.push_back(std::move(children[child]));
      }
      children.swap(others);
    }
    for (Support::ChildProcess& child : children) child.Kill();
    if (fs::exists(path.string() + ".part")) ++mKillsInsideARotation;
  }

  void Start(const fs::path& path, std::vector<Support::ChildProcess>& children) {
    const int writer = mStarted++;
    children.emplace_back(
        [this, &path, writer] { return WriteUntilKilled(path, writer, mAcknowledged[writer]); });
  }

  /// A random number of records from now; for the last kill of a round, when a rotation is under way.
  void WaitForAMoment(const fs::path& path, int kill) {
    const int writer = mStarted - 1;
    const int target = static_cast<int>(mRandom() % 300);
    while (mAcknowledged[writer] < target) std::this_thread::yield();
    if (kill < KILLS_PER_ROUND - 1) return;
    // Bounded by the writers' end: when they have written all, no rotation comes any more.
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
        // The one under way when its writer was killed may be there or not.
        missing += count < (number < mAcknowledged[writer] ? 1 : 0) ? 1 : 0;
        doubled += count > (number <= mAcknowledged[writer] ? 1 : 0) ? 1 : 0;
      }
    }
    EXPECT_EQ(missing, 0);
    EXPECT_EQ(doubled, 0);
  }

  std::mt19937 mRandom{20240305};
  Acknowledged mAcknowledged;
  int mStarted = 0;
  int mFragments = 0;
  int mKillsInsideARotation = 0;
};

TEST_F(KilledWriters, LoseAndDoubleNoAcknowledgedRecordAndSpoilNoOther) {
  int fragments = 0;
  // More rounds, within reason, where the moments were never those of a rotation.
  for (int round = 0; round < ROUNDS || (mKillsInsideARotation == 0 && round < 5 * ROUNDS); ++round) {
    const Support::TemporaryDirectory directory;
    const fs::path path = directory.Path() / "shared.log";
    mStarted = 0;
    for (int writer = 0; writer < WRITERS_PER_ROUND; ++writer) mAcknowledged[writer] = 0;
    mFragments = 0;
    RunRound(path);
    {
      // A last writer, who finishes what the killed ones left.
      Support::DiskFileClient client(path, {.mSize = LIMIT, .mBackups = 256});
      client.Log("last");
    }
    Support::LogFiles files = Support::ReadLogFiles(path);
    ASSERT_LT(files.mBackups, 256U);
    EXPECT_EQ(files.mFilesWithoutHead, 0U);
    ASSERT_EQ(Support::TextOf(files.mLines.back()), "last");
    files.mLines.pop_back();
    ExpectNothingAcknowledgedIsMissingOrDoubled(files.mLines);
    // At most one torn record for each writer that was killed.
    EXPECT_LE(mFragments, WRITERS_PER_ROUND);
    fragments += mFragments;
  }
  EXPECT_GT(mKillsInsideARotation, 0);
  RecordProperty("kills_inside_a_rotation", mKillsInsideARotation);
  RecordProperty("torn_records_set_apart", fragments);
}

}  // namespace

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/DiskFileClient.h"
#include "support/LogFiles.h"
#include "support/TemporaryDirectory.h"

namespace {

constexpr int CHILDREN = 20;
constexpr int RECORDS_OF_A_CHILD = 50;
constexpr int THREADS = 4;

class ForkedClient : public testing::Test {
 protected:
  static std::string IDsOf(const std::string& line) {
    const std::size_t begin = line.find("[PID:");
    return line.substr(begin, line.find("][Test]", begin) + 1 - begin);
  }

  static std::string OwnIDs() {
    return "[PID:" + std::to_string(getpid()) + "][THR:" + std::to_string(gettid()) + "]";
  }

  int LogAsAChild(int child) {
    for (int number = 0; number < RECORDS_OF_A_CHILD; ++number) {
      mClient.Log(("child " + std::to_string(child) + " " + OwnIDs()).c_str());
    }
    return 0;
  }

  std::vector<std::string> Lines() const { return Support::ReadLogFiles(mPath).mLines; }

  const Support::TemporaryDirectory mDirectory;
  const std::filesystem::path mPath = mDirectory.Path() / "a.log";
  Support::DiskFileClient mClient{mPath, {.mSize = 100'000'000}};
};

TEST_F(ForkedClient, LogsWithItsOwnProcessAndThreadID) {
  mClient.Log("parent");
  EXPECT_EQ(Support::ChildProcess([this] { return LogAsAChild(0); }).Wait(), 0);
  mClient.Log("parent");

  const std::vector<std::string> lines = Lines();
  ASSERT_EQ(lines.size(), RECORDS_OF_A_CHILD + 2U);
  EXPECT_EQ(IDsOf(lines.front()), OwnIDs());
  EXPECT_EQ(IDsOf(lines.back()), OwnIDs());
  for (std::size_t line = 1; line <= RECORDS_OF_A_CHILD; ++line) {
    EXPECT_EQ(Support::TextOf(lines[line]), "child 0 " + IDsOf(lines[line]));
    EXPECT_NE(IDsOf(lines[line]), OwnIDs());
  }
}

TEST_F(ForkedClient, LogsAtOnceWhileTheThreadsOfItsParentLog) {
  std::atomic<bool> stop{false};
  std::atomic<int> written{0};
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([&] {
      while (!stop) {
        mClient.Log("parent");
        ++written;
      }
    });
  }
  std::vector<Support::ChildProcess> children;
  for (int child = 0; child < CHILDREN; ++child) {
    children.emplace_back([this, child] { return LogAsAChild(child); });
    mClient.Log("parent");
    ++written;
  }
  for (Support::ChildProcess& child : children) EXPECT_EQ(child.Wait(), 0);
  stop = true;
  threads.clear();

  std::map<std::string, int> counts;
  for (const std::string& line : Lines()) {
    const std::string text = Support::TextOf(line);
    ++counts[text.substr(0, text.find(" ["))];
  }
  EXPECT_EQ(counts.size(), CHILDREN + 1U);
  EXPECT_EQ(counts["parent"], written);
  for (int child = 0; child < CHILDREN; ++child) {
    EXPECT_EQ(counts["child " + std::to_string(child)], RECORDS_OF_A_CHILD) << child;
  }
}

TEST_F(ForkedClient, ChildThatNeverLogsDoesNotKeepTheFileLocked) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  // Lives until the parent closes the pipe.
  Support::ChildProcess child([&] {
    close(ends[1]);
    char end;
    return read(ends[0], &end, 1) == 0 ? 0 : 1;
  });
  close(ends[0]);
  mClient.Log("while the child lives");
  EXPECT_EQ(Support::ChildProcess([this] {
              mClient.Log("from another child");
              return 0;
            }).Wait(),
            0);
  close(ends[1]);
  EXPECT_EQ(child.Wait(), 0);
  EXPECT_EQ(Lines().size(), 2U);
}

TEST_F(ForkedClient, CanForkAgain) {
  EXPECT_EQ(Support::ChildProcess([this] {
              mClient.Log("child");
              return Support::ChildProcess([this] { return LogAsAChild(1); }).Wait();
            }).Wait(),
            0);
  EXPECT_EQ(Lines().size(), RECORDS_OF_A_CHILD + 1U);
}

}  // namespace

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <latch>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/DiskFileClient.h"
#include "support/ForkedThread.h"
#include "support/LogFiles.h"
#include "support/TemporaryDirectory.h"

namespace {

constexpr int RACING_THREADS = 2;

/// Must run in a process that has never logged. Threads log their first records; meanwhile, a little later in
/// each round, a child is forked, which logs as well.
bool ChildForkedAtTheFirstRecordsLogs(const std::filesystem::path& path, int round) {
  Support::DiskFileClient client(path);
  std::atomic<bool> mayLog{false};
  std::atomic<int> ready{0};
  // The threads live until after the fork. The thread sanitizer would report one that ended before the fork
  // as leaked in the child.
  std::latch forked(1);
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < RACING_THREADS; ++thread) {
    threads.emplace_back([&] {
      ++ready;
      while (!mayLog) std::this_thread::yield();
      client.Log("first of its thread");
      forked.wait();
    });
  }
  while (ready != RACING_THREADS) std::this_thread::yield();
  mayLog = true;
  for (std::atomic<int> pause{round % 100 * 200}; pause > 0; --pause) {
  }
  const pid_t child = Support::StartChild([&client] {
    client.Log("child");
    return true;
  });
  forked.count_down();
  return Support::SucceededChild(child);
}

TEST(ForkedProcess, HangsNoChildForkedDuringTheFirstRecordsOfItsThreads) {
  constexpr int ROUNDS = 400;
  const Support::TemporaryDirectory directory;
  const std::filesystem::path path = directory.Path() / "a.log";
  for (int round = 0; round < ROUNDS; ++round) {
    ASSERT_EQ(
        Support::ChildProcess([&] { return ChildForkedAtTheFirstRecordsLogs(path, round) ? 0 : 1; }).Wait(),
        0)
        << "round " << round;
  }
  EXPECT_EQ(Support::ReadLogFiles(path).mLines.size(), ROUNDS * (RACING_THREADS + 1U));
}

}  // namespace

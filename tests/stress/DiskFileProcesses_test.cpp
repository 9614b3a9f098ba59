#include <cstdio>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/DiskFileClient.h"
#include "support/LogFiles.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned long LIMIT = 65536;
constexpr int PROCESSES = 4;
constexpr int THREADS = 8;
constexpr int RECORDS_PER_THREAD = 1200;
constexpr int ROUNDS = 4;
constexpr std::size_t LARGEST_RECORD = 400;

std::string Text(int process, int thread, int number) {
  char begin[64];
  std::snprintf(begin, sizeof begin, "process %d thread %d number %d ", process, thread, number);
  return begin + std::string(static_cast<std::size_t>(40 + (number * 7) % 120), 'x') + " end";
}

int WriteFromThreads(const fs::path& path, int process) {
  Support::DiskFileClient client(path, {.mSize = LIMIT, .mBackups = 256});
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([&client, process, thread] {
      for (int number = 0; number < RECORDS_PER_THREAD; ++number) {
        client.Log(Text(process, thread, number).c_str());
      }
    });
  }
  return 0;
}

void WriteFromProcesses(const fs::path& path) {
  std::vector<Support::ChildProcess> children;
  for (int process = 0; process < PROCESSES; ++process) {
    children.emplace_back([&path, process] { return WriteFromThreads(path, process); });
  }
  for (Support::ChildProcess& child : children) EXPECT_EQ(child.Wait(), 0);
}

/// Expects every record once, whole, and in order within its thread.
void ExpectEveryRecordInOrder(const std::vector<std::string>& lines) {
  std::map<std::pair<int, int>, int> next;
  std::size_t damaged = 0;
  for (const std::string& line : lines) {
    const std::string text = Support::TextOf(line);
    int process = -1;
    int thread = -1;
    int number = -1;
    std::sscanf(text.c_str(), "process %d thread %d number %d ", &process, &thread, &number);
    if (text != Text(process, thread, number)) {
      ++damaged;
    } else {
      ASSERT_EQ(number, (next[{process, thread}]++)) << line;
    }
  }
  EXPECT_EQ(damaged, 0U);
  EXPECT_EQ(next.size(), static_cast<std::size_t>(PROCESSES * THREADS));
  for (const auto& [writer, count] : next) EXPECT_EQ(count, RECORDS_PER_THREAD) << writer.first;
}

TEST(DiskFileProcesses, FourProcessesOfEightThreadsLoseNothingOverHundredsOfRotations) {
  std::size_t rotations = 0;
  for (int round = 0; round < ROUNDS; ++round) {
    const Support::TemporaryDirectory directory;
    const fs::path path = directory.Path() / "shared.log";
    WriteFromProcesses(path);

    const Support::LogFiles files = Support::ReadLogFiles(path);
    ASSERT_LT(files.mBackups, 256U) << "the oldest backup may have been dropped";
    EXPECT_EQ(files.mFilesWithoutHead, 0U);
    EXPECT_LE(files.mLargestFile, LIMIT + LARGEST_RECORD);
    ExpectEveryRecordInOrder(files.mLines);
    rotations += files.mBackups;
  }
  EXPECT_GE(rotations, 300U);
  RecordProperty("rotations", static_cast<int>(rotations));
}

}  // namespace

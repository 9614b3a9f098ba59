#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <functional>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/Destination_DebugOutput.h>
#include <YLog/Initializer.h>

#include "support/ChildProcess.h"
#include "support/ReadFile.h"
#include "support/StandardErrorPipe.h"
#include "support/TemporaryDirectory.h"
#include "support/WaitUntil.h"

namespace {

using Support::Pipe;
using testing::AllOf;
using testing::Each;
using testing::SizeIs;

/// A counter that this process shares with its children.
class SharedCount {
 public:
  SharedCount()
      : mpCount(new (mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                          MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>(0)) {}
  ~SharedCount() { munmap(mpCount, sizeof(std::atomic<int>)); }
  SharedCount(const SharedCount&) = delete;
  SharedCount& operator=(const SharedCount&) = delete;

  std::atomic<int>& operator*() const { return *mpCount; }

 private:
  std::atomic<int>* const mpCount;
};

constinit std::atomic<int>* gspSignals = nullptr;

/// Interrupts the calling process a thousand times a second; calls are not restarted.
void InterruptOften(std::atomic<int>& count) {
  gspSignals = &count;
  struct sigaction action {};
  action.sa_handler = [](int) { ++*gspSignals; };
  sigaction(SIGALRM, &action, nullptr);
  const itimerval often{{0, 1000}, {0, 1000}};
  setitimer(ITIMER_REAL, &often, nullptr);
}

class DebugOutputPipe : public testing::Test {
 protected:
  /// The output of a child that is interrupted often. The first reads are so slow that it is interrupted in
  /// its writes.
  std::string ReadFromInterruptedChild(const std::function<int()>& work) {
    constexpr int SLOW_READS = 30;
    Pipe pipe;
    Support::ChildProcess child([&] {
      dup2(pipe.Writer(), STDERR_FILENO);
      pipe.CloseWriter();
      InterruptOften(*mSignals);
      return work();
    });
    std::string text;
    for (int i = 0; i < SLOW_READS; ++i) {
      const int before = *mSignals;
      const bool interrupted = Support::WaitUntil([&] { return pipe.IsFull() && *mSignals >= before + 3; });
      EXPECT_TRUE(interrupted);
      if (!interrupted) break;
      text += pipe.ReadPage();
    }
    pipe.CloseWriter();
    text += pipe.ReadAll();
    EXPECT_EQ(child.Wait(), 0);
    return text;
  }

  void Log(const std::string& text) const { mOutput->LogMessage(text.c_str()); }

  const YLog::Initializer mInitializer;
  const YBase::SmartPtrI<YLog::Destination_DebugOutput> mOutput = YLog::GetDestination_DebugOutput();
  const SharedCount mSignals;
};

TEST_F(DebugOutputPipe, LosesNoRecordToInterruptions) {
  const std::string record(400, 'r');
  const std::string text = ReadFromInterruptedChild([&] {
    for (int i = 0; i < 600; ++i) Log(record);
    return std::ferror(stderr);
  });
  EXPECT_THAT(Support::Lines(text), AllOf(SizeIs(600), Each(record)));
}

TEST_F(DebugOutputPipe, LosesNoRecordToInterruptionsIfTheHostDoesNotBlock) {
  const std::string record(400, 'r');
  const std::string text = ReadFromInterruptedChild([&] {
    fcntl(STDERR_FILENO, F_SETFL, O_NONBLOCK);
    for (int i = 0; i < 600; ++i) Log(record);
    return std::ferror(stderr);
  });
  EXPECT_THAT(Support::Lines(text), AllOf(SizeIs(600), Each(record)));
}

TEST_F(DebugOutputPipe, DoesNotClearAFailureOfTheHost) {
  Pipe pipe;
  const Support::RedirectedStandardError redirected(pipe.Writer());
  const int closed = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  close(STDERR_FILENO);
  std::fputs("lost", stderr);
  dup2(closed, STDERR_FILENO);
  close(closed);
  ASSERT_TRUE(std::ferror(stderr));
  Log("text");
  EXPECT_TRUE(std::ferror(stderr));
  EXPECT_EQ(pipe.ReadPage(), "text\n");
}

TEST_F(DebugOutputPipe, CompletesRecordsAfterAnInterruptedPartialWrite) {
  const std::string record(10'000, 'r');
  const std::string text = ReadFromInterruptedChild([&] {
    for (int i = 0; i < 60; ++i) Log(record);
    return std::ferror(stderr);
  });
  EXPECT_THAT(Support::Lines(text), AllOf(SizeIs(60), Each(record)));
}

TEST_F(DebugOutputPipe, KeepsTheHostsOutputOutOfRecords) {
  const std::string record(10'000, 'r');
  const std::string text = ReadFromInterruptedChild([&] {
    std::atomic<bool> enough{false};
    std::jthread host([&] {
      while (!enough) std::fputs("host\n", stderr);
    });
    for (int i = 0; i < 60; ++i) Log(record);
    enough = true;
    return 0;
  });
  const std::vector<std::string> lines = Support::Lines(text);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), record), 60);
  EXPECT_GT(std::count(lines.begin(), lines.end(), "host"), 0);
  EXPECT_THAT(lines, Each(testing::AnyOf(record, "host")));
}

class DebugOutputFile : public DebugOutputPipe {
 protected:
  /// The lines that a child writes to a file, which may not grow beyond a kilobyte until the child lifts the
  /// limit.
  std::vector<std::string> LinesOfLimitedChild(const std::function<void(const rlimit& permissive)>& work) {
    const Support::TemporaryDirectory directory;
    const std::string path = directory.Path() / "errors";
    const int status =
        Support::ChildProcess([&] {
          dup2(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600), STDERR_FILENO);
          rlimit permissive{};
          getrlimit(RLIMIT_FSIZE, &permissive);
          const rlimit limit{1'000, permissive.rlim_max};
          setrlimit(RLIMIT_FSIZE, &limit);
          work(permissive);
          return 0;
        }).Wait();
    EXPECT_EQ(status, 0);
    return Support::Lines(Support::ReadFile(path));
  }
};

TEST_F(DebugOutputFile, ExceedingTheLimitOnFileSizesDoesNotEndTheHost) {
  const std::string record(300, 'r');
  const std::vector<std::string> lines = LinesOfLimitedChild([&](const rlimit&) {
    for (int i = 0; i < 5; ++i) Log(record);
  });
  ASSERT_THAT(lines, SizeIs(4));
  EXPECT_EQ(lines.at(2), record);
  EXPECT_LT(lines.at(3).size(), record.size());
}

TEST_F(DebugOutputFile, StartsANewLineAfterARecordThatWasCutOff) {
  const std::vector<std::string> lines = LinesOfLimitedChild([&](const rlimit& permissive) {
    Log(std::string(2'000, 'r'));
    Log("lost");
    setrlimit(RLIMIT_FSIZE, &permissive);
    Log("after");
    Log("later");
  });
  EXPECT_THAT(lines, testing::ElementsAre(std::string(1'000, 'r'), "after", "later"));
}

}  // namespace

#include <atomic>
#include <cstdio>
#include <functional>
#include <latch>
#include <map>
#include <sstream>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <YLog/CmdLogTrace.h>
#include <YLog/MsgLogTrace.h>

#include "support/ChildProcess.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

using Support::ChildProcess;
using Support::Lines;
using Support::ReadFile;
using Support::TemporaryDirectory;

constexpr int THREADS = 8;
constexpr int REPORTS = 5000;

/// Calls `report(thread, number)` for each report of each thread, all threads at once, and `meanwhile`
/// repeatedly until they have finished, the first time as they start.
void ReportFromThreads(const std::function<void(int, int)>& report, const std::function<void()>& meanwhile) {
  std::latch start(THREADS + 1);
  std::atomic<int> running{THREADS};
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([&, thread] {
      start.arrive_and_wait();
      for (int number = 0; number < REPORTS; ++number) report(thread, number);
      --running;
    });
  }
  start.arrive_and_wait();
  do meanwhile();
  while (running > 0);
}

/// Adds the counts of each command in a printed file.
void CountCommands(const std::string& text, std::map<int, int>& counts) {
  for (const std::string& line : Lines(text)) {
    std::istringstream items(line.substr(line.find("\t\t") + 2));
    int commandId = 0;
    int count = 0;
    char mark = 0;
    for (std::string rest; items >> commandId >> mark >> count; std::getline(items, rest, '\t'))
      counts[commandId] += count;
  }
}

class CmdLogTraceThreads : public testing::Test {
 protected:
  CmdLogTraceThreads() { mTrace.SetOutputFileName(mFolder.Wide("commands.txt").c_str()); }

  void CollectAndPrint() {
    mTrace.CollectLogTrace();
    Print();
  }

  void Print() {
    EXPECT_EQ(mTrace.PrintAllLogTrace(), 0U);
    CountCommands(ReadFile(mFolder.Path() / "commands.txt"), mCounts);
  }

  TemporaryDirectory mFolder;
  YLog::CmdLogTrace mTrace;
  std::map<int, int> mCounts;
};

TEST_F(CmdLogTraceThreads, PrintEachReportInExactlyOneSnapshot) {
  ReportFromThreads(
      [&](int thread, int number) {
        mTrace.AddToLogTrace(static_cast<unsigned long>(thread), thread * REPORTS + number, 1);
      },
      [&] { CollectAndPrint(); });
  CollectAndPrint();
  EXPECT_EQ(mCounts.size(), THREADS * REPORTS);
  for (const auto& [commandId, count] : mCounts) ASSERT_EQ(count, 1) << commandId;
}

TEST_F(CmdLogTraceThreads, LoseNoReportUnderASharedThreadId) {
  ReportFromThreads([&](int, int) { mTrace.AddToLogTrace(1, 5, 1); }, [&] { CollectAndPrint(); });
  CollectAndPrint();
  EXPECT_EQ(mCounts, (std::map<int, int>{{5, THREADS * REPORTS}}));
}

TEST_F(CmdLogTraceThreads, PrintNoReportTwiceWhileOthersClear) {
  ReportFromThreads(
      [&](int thread, int number) {
        mTrace.AddToLogTrace(static_cast<unsigned long>(thread), thread * REPORTS + number, 1);
      },
      [&] {
        CollectAndPrint();
        mTrace.Clear();
        mTrace.CollectLogTrace();
        Print();
      });
  for (const auto& [commandId, count] : mCounts) ASSERT_EQ(count, 1) << commandId;
  mTrace.Clear();
  mCounts.clear();
  CollectAndPrint();
  EXPECT_TRUE(mCounts.empty());
}

TEST_F(CmdLogTraceThreads, MaySetTheFileNameWhileOthersPrint) {
  ReportFromThreads([&](int, int) { mTrace.SetOutputFileName(mFolder.Wide("commands.txt").c_str()); },
                    [&] { EXPECT_EQ(mTrace.PrintAllLogTrace(), 0U); });
}

class MsgLogTraceThreads : public testing::Test {
 protected:
  MsgLogTraceThreads() {
    YLog::MsgLogTrace::Init();
    YLog::MsgLogTrace::SetMsgLogTrace(true);
  }

  static void Send(int thread, int number) {
    // Not std::to_wstring: it takes a lock of the C library, which a forked child can inherit locked.
    const std::wstring destination(1, static_cast<wchar_t>(L'a' + number % 3));
    EXPECT_EQ(YLog::MsgLogTrace::SendToLogTrace(static_cast<unsigned long>(thread % 2), number % 5,
                                                destination, 1, number % 3),
              0);
  }

  std::string Print() {
    YLog::MsgLogTrace* trace = YLog::MsgLogTrace::getInstance();
    trace->SetOutputFileName(mFolder.Wide("messages.txt").c_str());
    EXPECT_EQ(trace->PrintAllLogTrace(), 0U);
    return ReadFile(mFolder.Path() / "messages.txt");
  }

  TemporaryDirectory mFolder;
};

/// Adds up all counts of a printed file.
int CountMessages(const std::string& text) {
  int sum = 0;
  for (std::size_t item = text.find('('); item != std::string::npos; item = text.find('(', item + 1)) {
    int counts[3] = {};
    EXPECT_EQ(std::sscanf(text.c_str() + item, "(%d-%d-%d:1)", &counts[0], &counts[1], &counts[2]), 3);
    sum += counts[0] + counts[1] + counts[2];
  }
  return sum;
}

TEST_F(MsgLogTraceThreads, LoseNoReport) {
  int collections = 0;
  ReportFromThreads(Send, [&] {
    if (++collections < 100) YLog::MsgLogTrace::getInstance()->CollectLogTrace();
  });
  YLog::MsgLogTrace::getInstance()->CollectLogTrace();
  EXPECT_EQ(CountMessages(Print()), THREADS * REPORTS);
}

TEST_F(MsgLogTraceThreads, PrintNoReportTwiceWhileDestinationsAreDiscarded) {
  int printed = 0;
  ReportFromThreads(Send, [&] {
    YLog::MsgLogTrace::getInstance()->CollectLogTrace();
    printed += CountMessages(Print());
    YLog::MsgLogTrace::getInstance()->Clear();
  });
  EXPECT_LE(printed, THREADS * REPORTS);
  YLog::MsgLogTrace::getInstance()->Clear();
  EXPECT_EQ(CountMessages(Print()), 0);
}

TEST_F(MsgLogTraceThreads, GetTheSameObjectWhenAllRequestItFirst) {
  std::latch start(THREADS);
  std::vector<YLog::MsgLogTrace*> found(THREADS);
  {
    std::vector<std::jthread> threads;
    for (YLog::MsgLogTrace*& mine : found) {
      threads.emplace_back([&] {
        start.arrive_and_wait();
        mine = YLog::MsgLogTrace::getInstance();
      });
    }
  }
  EXPECT_EQ(found, std::vector<YLog::MsgLogTrace*>(THREADS, YLog::MsgLogTrace::getInstance()));
}

TEST_F(MsgLogTraceThreads, DoNotBlockReportsInAForkedChild) {
  std::latch start(THREADS + 1);
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([&start, thread](const std::stop_token& stop) {
      start.arrive_and_wait();
      for (int number = 0; !stop.stop_requested(); ++number) Send(thread, number);
    });
  }
  start.arrive_and_wait();
  for (int i = 0; i < 20; ++i) {
    ChildProcess child([] {
      Send(0, 0);
      YLog::MsgLogTrace::getInstance()->CollectLogTrace();
      return 0;
    });
    EXPECT_EQ(child.Wait(), 0);
  }
  for (std::jthread& thread : threads) thread.request_stop();
}

}  // namespace

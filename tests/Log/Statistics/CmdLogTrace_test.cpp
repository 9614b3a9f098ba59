#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <YLog/CmdLogTrace.h>

#include "support/CancelledThread.h"
#include "support/ForeignLocale.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

using Support::ReadFile;
using Support::TemporaryDirectory;
using YLog::CmdTraceItem;
using YLog::LogTrace;

constexpr unsigned long THREAD = 7;
constexpr long long LONGEST = std::numeric_limits<long long>::max();
constexpr long long SHORTEST = std::numeric_limits<long long>::min();

class CmdLogTrace : public testing::Test {
 protected:
  CmdLogTrace() { mTrace.SetOutputFileName(mFolder.Wide("commands.txt").c_str()); }

  CmdTraceItem Item(int commandId) { return mTrace.GetCurItem(THREAD).at(commandId); }

  std::string Print() {
    EXPECT_EQ(mTrace.PrintAllLogTrace(), 0U);
    return ReadFile(mFolder.Path() / "commands.txt");
  }

  void CollectALot() {
    for (int commandId = 0; commandId < 100'000; ++commandId) mTrace.AddToLogTrace(THREAD, commandId, 1);
    mTrace.CollectLogTrace();
  }

  std::string CollectAndPrint() {
    mTrace.CollectLogTrace();
    return Print();
  }

  TemporaryDirectory mFolder;
  YLog::CmdLogTrace mTrace;
};

TEST_F(CmdLogTrace, TakesTheFirstDurationAsMinimumAverageAndMaximum) {
  mTrace.AddToLogTrace(THREAD, 5, 40);
  const CmdTraceItem item = Item(5);
  EXPECT_EQ(item.commandId, 5);
  EXPECT_EQ(item.count, 1);
  EXPECT_EQ(item.minimum, 40);
  EXPECT_EQ(item.average, 40);
  EXPECT_EQ(item.maximum, 40);
}

TEST_F(CmdLogTrace, UpdatesMinimumAverageAndMaximumWithLaterDurations) {
  for (const long long duration : {40, 10, 25, 90}) mTrace.AddToLogTrace(THREAD, 5, duration);
  const CmdTraceItem item = Item(5);
  EXPECT_EQ(item.count, 4);
  EXPECT_EQ(item.minimum, 10);
  EXPECT_EQ(item.average, 41);
  EXPECT_EQ(item.maximum, 90);
}

TEST_F(CmdLogTrace, DropsTheRemainderOfTheAverageAtEachReport) {
  for (const long long duration : {1, 2, 2, 2}) mTrace.AddToLogTrace(THREAD, 5, duration);
  EXPECT_EQ(Item(5).average, 1);
}

TEST_F(CmdLogTrace, MinimumIsAtMostOneHundredMillion) {
  mTrace.AddToLogTrace(THREAD, 5, 100'000'001);
  EXPECT_EQ(Item(5).minimum, 100'000'000);
  EXPECT_EQ(Item(5).maximum, 100'000'001);
}

TEST_F(CmdLogTrace, MaximumIsAtLeastZero) {
  mTrace.AddToLogTrace(THREAD, 5, -3);
  mTrace.AddToLogTrace(THREAD, 5, -4);
  EXPECT_EQ(Item(5).minimum, -4);
  EXPECT_EQ(Item(5).average, -3);
  EXPECT_EQ(Item(5).maximum, 0);
}

TEST_F(CmdLogTrace, AveragesTheLongestAndTheShortestDurations) {
  for (int i = 0; i < 3; ++i) mTrace.AddToLogTrace(THREAD, 5, LONGEST);
  for (int i = 0; i < 3; ++i) mTrace.AddToLogTrace(THREAD, 6, SHORTEST);
  EXPECT_EQ(Item(5).average, LONGEST);
  EXPECT_EQ(Item(6).average, SHORTEST);
  EXPECT_EQ(CollectAndPrint(),
            "0/6(0.00%)\t\t5:3(100000000/9223372036854775807/9223372036854775807)\t"
            "6:3(-9223372036854775808/-9223372036854775808/0)\t\n");
}

TEST_F(CmdLogTrace, KeepsFiguresPerThreadUntilTheyAreCollected) {
  mTrace.AddToLogTrace(1, 5, 10);
  mTrace.AddToLogTrace(2, 5, 30);
  EXPECT_EQ(mTrace.GetCurItem(1).at(5).average, 10);
  EXPECT_EQ(mTrace.GetCurItem(2).at(5).average, 30);
  EXPECT_TRUE(mTrace.GetCurItem(3).empty());
}

TEST_F(CmdLogTrace, AddsUpTheReportsOfAllThreads) {
  mTrace.AddToLogTrace(1, 5, 10);
  mTrace.AddToLogTrace(1, 5, 20);
  mTrace.AddToLogTrace(2, 5, 100);
  mTrace.AddToLogTrace(2, 4, 7);
  EXPECT_EQ(CollectAndPrint(), "0/4(0.00%)\t\t4:1(7/7/7)\t5:3(10/43/100)\t\n");
}

TEST_F(CmdLogTrace, StartsFromZeroAfterACollection) {
  mTrace.AddToLogTrace(THREAD, 5, 10);
  mTrace.CollectLogTrace();
  EXPECT_TRUE(mTrace.GetCurItem(THREAD).empty());
  mTrace.AddToLogTrace(THREAD, 5, 30);
  EXPECT_EQ(Item(5).average, 30);
}

TEST_F(CmdLogTrace, PrintsALineForEachSnapshotInTheOrderOfCollection) {
  mTrace.AddToLogTrace(THREAD, 93, 10);
  mTrace.AddToLogTrace(THREAD, -2, 1);
  mTrace.CollectLogTrace();
  mTrace.AddToLogTrace(THREAD, 108, 20);
  EXPECT_EQ(CollectAndPrint(),
            "1/2(50.00%)\t\t-2:1(1/1/1)\t93:1(10/10/10)\t\n1/1(100.00%)\t\t108:1(20/20/20)\t\n");
}

TEST_F(CmdLogTrace, MarksTheCommandsFrom93To108) {
  for (const int commandId : {92, 93, 100, 108, 109, 110}) mTrace.AddToLogTrace(THREAD, commandId, 1);
  EXPECT_TRUE(CollectAndPrint().starts_with("3/6(50.00%)\t\t92:1(1/1/1)\t"));
}

TEST_F(CmdLogTrace, PrintsAPercentageOfZeroIfNoCommandIsMarked) {
  mTrace.AddToLogTrace(THREAD, 1, 1);
  EXPECT_TRUE(CollectAndPrint().starts_with("0/1(0.00%)\t\t"));
}

TEST_F(CmdLogTrace, RoundsThePercentageToTwoDigits) {
  for (const int commandId : {93, 94, 1}) mTrace.AddToLogTrace(THREAD, commandId, 1);
  EXPECT_TRUE(CollectAndPrint().starts_with("2/3(66.67%)\t\t"));
}

TEST_F(CmdLogTrace, PrintsNumbersRegardlessOfTheLocale) {
  const Support::ForeignLocale locale;
  char number[16];
  std::snprintf(number, sizeof number, "%.1f", 1.5);
  ASSERT_STREQ(number, "1,5");
  for (const int commandId : {93, 94, 1234}) mTrace.AddToLogTrace(THREAD, commandId, 1'234'567);
  EXPECT_EQ(CollectAndPrint(),
            "2/3(66.67%)\t\t93:1(1234567/1234567/1234567)\t94:1(1234567/1234567/1234567)\t"
            "1234:1(1234567/1234567/1234567)\t\n");
}

TEST_F(CmdLogTrace, PrintsALineForAnEmptySnapshot) {
  EXPECT_EQ(CollectAndPrint(), "0/0(0.00%)\t\t\n");
}

TEST_F(CmdLogTrace, PrintsAnEmptyFileIfNothingWasCollectedSinceTheLastPrint) {
  mTrace.AddToLogTrace(THREAD, 5, 10);
  EXPECT_NE(CollectAndPrint(), "");
  EXPECT_EQ(Print(), "");
}

TEST_F(CmdLogTrace, ClearDiscardsFiguresAndSnapshots) {
  mTrace.AddToLogTrace(THREAD, 5, 10);
  mTrace.CollectLogTrace();
  mTrace.AddToLogTrace(THREAD, 6, 10);
  mTrace.Clear();
  EXPECT_TRUE(mTrace.GetCurItem(THREAD).empty());
  EXPECT_EQ(Print(), "");
}

TEST_F(CmdLogTrace, ReplacesTheContentOfTheFile) {
  std::ofstream(mFolder.Path() / "commands.txt") << std::string(1000, 'x');
  EXPECT_EQ(CollectAndPrint(), "0/0(0.00%)\t\t\n");
}

TEST_F(CmdLogTrace, PrintsToTheFileThatWasNamedLast) {
  mTrace.CollectLogTrace();
  mTrace.SetOutputFileName(mFolder.Wide("others.txt").c_str());
  EXPECT_EQ(mTrace.PrintAllLogTrace(), 0U);
  EXPECT_EQ(ReadFile(mFolder.Path() / "others.txt"), "0/0(0.00%)\t\t\n");
  EXPECT_FALSE(std::filesystem::exists(mFolder.Path() / "commands.txt"));
}

TEST_F(CmdLogTrace, ReportsThatAFileCannotBeOpenedAndKeepsTheSnapshots) {
  mTrace.CollectLogTrace();
  for (const std::wstring& name :
       {std::wstring(), mFolder.Path().wstring(), mFolder.Wide("no/such/folder.txt")}) {
    mTrace.SetOutputFileName(name.c_str());
    EXPECT_EQ(mTrace.PrintAllLogTrace(), 0x80004003U);
  }
  mTrace.SetOutputFileName(nullptr);
  EXPECT_EQ(mTrace.PrintAllLogTrace(), LogTrace::FILE_NOT_OPENED);
  mTrace.SetOutputFileName(mFolder.Wide("commands.txt").c_str());
  EXPECT_EQ(Print(), "0/0(0.00%)\t\t\n");
}

TEST_F(CmdLogTrace, ReportsThatAFileNameIsNotASCIIAndKeepsTheSnapshots) {
  mTrace.CollectLogTrace();
  mTrace.SetOutputFileName((mFolder.Wide("") + L"\u00FCber.txt").c_str());
  EXPECT_EQ(mTrace.PrintAllLogTrace(), 0x80004005U);
  EXPECT_TRUE(std::filesystem::is_empty(mFolder.Path()));
  mTrace.SetOutputFileName(mFolder.Wide("commands.txt").c_str());
  EXPECT_EQ(Print(), "0/0(0.00%)\t\t\n");
}

TEST_F(CmdLogTrace, IsPrintedCompletelyByACancelledThread) {
  mTrace.CollectLogTrace();
  unsigned result = LogTrace::PRINT_FAILED;
  EXPECT_TRUE(Support::FinishesBeforeItIsCancelled([&] { result = mTrace.PrintAllLogTrace(); }));
  EXPECT_EQ(result, 0U);
  EXPECT_EQ(ReadFile(mFolder.Path() / "commands.txt"), "0/0(0.00%)\t\t\n");
}

TEST_F(CmdLogTrace, ReportsAFullDiskAndDiscardsTheSnapshots) {
  mTrace.CollectLogTrace();
  mTrace.SetOutputFileName(L"/dev/full");
  EXPECT_EQ(mTrace.PrintAllLogTrace(), 0x80004005U);
  mTrace.SetOutputFileName(mFolder.Wide("commands.txt").c_str());
  EXPECT_EQ(Print(), "");
}

TEST_F(CmdLogTrace, ReportsAFullDiskInTheMiddleOfALongFile) {
  CollectALot();
  mTrace.SetOutputFileName(L"/dev/full");
  EXPECT_EQ(mTrace.PrintAllLogTrace(), LogTrace::PRINT_FAILED);
}

TEST_F(CmdLogTrace, SurvivesALimitOnTheSizeOfFiles) {
  CollectALot();
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit limit{1000, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  EXPECT_EQ(mTrace.PrintAllLogTrace(), LogTrace::PRINT_FAILED);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  EXPECT_EQ(std::filesystem::file_size(mFolder.Path() / "commands.txt"), 1000U);
}

TEST_F(CmdLogTrace, SurvivesAPipeWhoseReaderCloses) {
  const std::string path = mFolder.Path() / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  CollectALot();  // More than fits into a pipe.
  const std::jthread reader([&] { close(open(path.c_str(), O_RDONLY | O_CLOEXEC)); });
  mTrace.SetOutputFileName(mFolder.Wide("pipe").c_str());
  EXPECT_EQ(mTrace.PrintAllLogTrace(), LogTrace::PRINT_FAILED);
}

TEST(LogTrace, PrintsNothingByItself) {
  struct Silent final : LogTrace {
    void CollectLogTrace() override {}
    void Clear() override {}
  };
  EXPECT_EQ(Silent().PrintAllLogTrace(), 0U);
}

}  // namespace

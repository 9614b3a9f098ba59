#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YDataType/DateTime.h>
#include <YLog/MsgLogTrace.h>

#include "support/ForeignLocale.h"
#include "support/ReadFile.h"
#include "support/TemporaryDirectory.h"

namespace {

using Support::Lines;
using Support::ReadFile;
using Support::TemporaryDirectory;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using YDataType::DateTime;
using YLog::LogTrace;
using YLog::MsgTraceItem;

constexpr unsigned long THREAD = 7;

/// The name of a destination, padded to 50 columns.
std::string Column(const std::string& destination) {
  return destination + std::string(50 - destination.size(), ' ');
}

/// Waits until the clock shows another millisecond.
std::string WaitForTheNextMillisecond() {
  const std::string before = DateTime::Now().ToString();
  std::string now;
  do now = DateTime::Now().ToString();
  while (now == before);
  return now;
}

class MsgLogTrace : public testing::Test {
 protected:
  MsgLogTrace() {
    YLog::MsgLogTrace::Init();
    mpTrace = YLog::MsgLogTrace::getInstance();
    mpTrace->SetOutputFileName(mFolder.Wide("messages.txt").c_str());
  }
  ~MsgLogTrace() override { YLog::MsgLogTrace::Destroy(); }

  int Add(int messageId, const std::wstring& destination, int duration, int kind) {
    return mpTrace->AddToLogTrace(THREAD, messageId, destination, duration, kind);
  }

  MsgTraceItem Item(int messageId, const std::wstring& destination) {
    return mpTrace->GetCurItem(THREAD).at({mpTrace->GetDstIndex(destination), messageId});
  }

  /// The lines of the file, without the first, which is the time.
  std::vector<std::string> Print() {
    EXPECT_EQ(mpTrace->PrintAllLogTrace(), 0U);
    std::vector<std::string> lines = Lines(ReadFile(mFolder.Path() / "messages.txt"));
    EXPECT_FALSE(lines.empty());
    lines.erase(lines.begin());
    return lines;
  }

  std::vector<std::string> CollectAndPrint() {
    mpTrace->CollectLogTrace();
    return Print();
  }

  TemporaryDirectory mFolder;
  YLog::MsgLogTrace* mpTrace = nullptr;
};

TEST_F(MsgLogTrace, CountsEachKindOfOutcomeSeparately) {
  EXPECT_EQ(Add(17, L"orders", 10, 0), 0);
  EXPECT_EQ(Add(17, L"orders", 20, 1), 0);
  EXPECT_EQ(Add(17, L"orders", 30, 2), 0);
  EXPECT_EQ(Add(17, L"orders", 40, 2), 0);
  const MsgTraceItem item = Item(17, L"orders");
  EXPECT_EQ(item.count0, 1);
  EXPECT_EQ(item.count1, 1);
  EXPECT_EQ(item.count2, 2);
  EXPECT_EQ(item.average, 25);
}

TEST_F(MsgLogTrace, DoesNotCountUnknownKindsButAveragesTheirDurations) {
  EXPECT_EQ(Add(17, L"orders", 10, 0), 0);
  for (const int kind : {3, -1, std::numeric_limits<int>::max()}) EXPECT_EQ(Add(17, L"orders", 30, kind), 1);
  const MsgTraceItem item = Item(17, L"orders");
  EXPECT_EQ(item.count0, 1);
  EXPECT_EQ(item.count1, 0);
  EXPECT_EQ(item.count2, 0);
  EXPECT_EQ(item.average, 27);  // 10, then (10 + 30) / 2, (20 + 30) / 2 and (25 + 30) / 2.
}

TEST_F(MsgLogTrace, AveragesTheLongestAndTheShortestDurations) {
  for (int i = 0; i < 3; ++i) Add(1, L"orders", std::numeric_limits<int>::max(), 0);
  for (int i = 0; i < 3; ++i) Add(2, L"orders", std::numeric_limits<int>::min(), i);
  EXPECT_THAT(CollectAndPrint(),
              ElementsAre("1\t" + Column("orders") + "\t1(3-0-0:2147483647)\t2(1-1-1:-2147483648)\t"));
}

TEST_F(MsgLogTrace, PrintsTheTimeOfItsCreationFirst) {
  EXPECT_THAT(CollectAndPrint(), ElementsAre());
  const std::string text = ReadFile(mFolder.Path() / "messages.txt");
  DateTime time(0.0);
  EXPECT_EQ(time.FromString(text.c_str()) + 1, text.size());
  EXPECT_EQ(text, time.ToString() + "\n");
}

TEST_F(MsgLogTrace, PrintsALineForEachDestinationOfEachSnapshotByName) {
  Add(5, L"b", 1, 0);
  Add(0, L"a", 2, 1);
  Add(218, L"a", 3, 2);
  mpTrace->CollectLogTrace();
  Add(5, L"b", 4, 0);
  EXPECT_THAT(CollectAndPrint(),
              ElementsAre("1\t" + Column("a") + "\t0(0-1-0:2)\t218(0-0-1:3)\t",
                          "1\t" + Column("b") + "\t5(1-0-0:1)\t", "2\t" + Column("a") + "\t",
                          "2\t" + Column("b") + "\t5(1-0-0:4)\t"));
}

TEST_F(MsgLogTrace, PrintsNumbersRegardlessOfTheLocale) {
  const Support::ForeignLocale locale;
  for (int i = 0; i < 1'234; ++i) Add(5, L"a", 1'234'567, 0);
  EXPECT_THAT(CollectAndPrint(), ElementsAre("1\t" + Column("a") + "\t5(1234-0-0:1234567)\t"));
  EXPECT_THAT(ReadFile(mFolder.Path() / "messages.txt"), StartsWith("20"));
}

TEST_F(MsgLogTrace, EndsTheFileWithALineFeed) {
  Add(5, L"b", 1, 0);
  CollectAndPrint();
  EXPECT_THAT(ReadFile(mFolder.Path() / "messages.txt"), testing::EndsWith("\t5(1-0-0:1)\t\n"));
}

TEST_F(MsgLogTrace, PrintsTheWholeOfANameLongerThanItsColumn) {
  const std::string name(60, 'n');
  Add(5, std::wstring(60, L'n'), 1, 0);
  EXPECT_THAT(CollectAndPrint(), ElementsAre("1\t" + name + "\t5(1-0-0:1)\t"));
}

TEST_F(MsgLogTrace, CountsMessagesOutside0To218ButDoesNotPrintThem) {
  for (const int messageId : {-1, 0, 218, 219, 300}) Add(messageId, L"a", 1, 0);
  EXPECT_EQ(Item(219, L"a").count0, 1);
  EXPECT_EQ(Item(-1, L"a").count0, 1);
  EXPECT_THAT(CollectAndPrint(), ElementsAre("1\t" + Column("a") + "\t0(1-0-0:1)\t218(1-0-0:1)\t"));
}

TEST_F(MsgLogTrace, WeightsTheAveragesOfThreadsByTheirCounts) {
  mpTrace->AddToLogTrace(1, 5, L"a", 10, 0);
  mpTrace->AddToLogTrace(1, 5, L"a", 10, 1);
  mpTrace->AddToLogTrace(2, 5, L"a", 41, 2);
  EXPECT_THAT(CollectAndPrint(), ElementsAre("1\t" + Column("a") + "\t5(1-1-1:20)\t"));
}

TEST_F(MsgLogTrace, PrintsAnAverageOfZeroIfNothingWasCounted) {
  Add(5, L"a", 30, 3);
  EXPECT_EQ(Item(5, L"a").average, 30);
  EXPECT_THAT(CollectAndPrint(), ElementsAre("1\t" + Column("a") + "\t5(0-0-0:0)\t"));
}

TEST_F(MsgLogTrace, PrintsOnlyTheTimeIfNothingWasCollectedSinceTheLastPrint) {
  Add(5, L"a", 1, 0);
  EXPECT_EQ(CollectAndPrint().size(), 1U);
  EXPECT_THAT(Print(), ElementsAre());
}

TEST_F(MsgLogTrace, NumbersDestinationsInTheOrderOfFirstUse) {
  EXPECT_EQ(mpTrace->GetDstIndex(L"b"), 0);
  EXPECT_EQ(mpTrace->GetDstIndex(L"a"), 1);
  EXPECT_EQ(mpTrace->GetDstIndex(L"b"), 0);
  EXPECT_EQ(mpTrace->GetDstIndex(L"\u00FC"), 2);
}

TEST_F(MsgLogTrace, PrintDiscardsDestinationsAndNoNumberIsReused) {
  EXPECT_EQ(mpTrace->GetDstIndex(L"a"), 0);
  EXPECT_EQ(mpTrace->GetDstIndex(L"b"), 1);
  Print();
  EXPECT_EQ(mpTrace->GetDstIndex(L"b"), 2);
  EXPECT_EQ(mpTrace->GetDstIndex(L"a"), 3);
}

TEST_F(MsgLogTrace, PrintDiscardsReportsThatWereNotCollected) {
  Add(5, L"a", 1, 0);
  Print();
  Add(6, L"a", 1, 0);
  EXPECT_THAT(CollectAndPrint(), ElementsAre("1\t" + Column("a") + "\t6(1-0-0:1)\t"));
}

TEST_F(MsgLogTrace, ClearDiscardsFiguresAndSnapshotsButKeepsDestinations) {
  Add(5, L"a", 1, 0);
  mpTrace->CollectLogTrace();
  Add(6, L"a", 1, 0);
  mpTrace->Clear();
  EXPECT_TRUE(mpTrace->GetCurItem(THREAD).empty());
  EXPECT_EQ(mpTrace->GetDstIndex(L"a"), 0);
  EXPECT_THAT(CollectAndPrint(), ElementsAre("1\t" + Column("a") + "\t"));
}

TEST_F(MsgLogTrace, ReportsThatAFileCannotBeOpenedAndKeepsSnapshotsAndDestinations) {
  Add(5, L"a", 1, 0);
  mpTrace->CollectLogTrace();
  for (const std::wstring& name : {std::wstring(), mFolder.Path().wstring(),
                                   mFolder.Wide("no/such/folder.txt"), mFolder.Wide("") + L"\u00FC"}) {
    mpTrace->SetOutputFileName(name.c_str());
    EXPECT_EQ(mpTrace->PrintAllLogTrace(), 0x80004003U);
  }
  mpTrace->SetOutputFileName(mFolder.Wide("messages.txt").c_str());
  EXPECT_THAT(Print(), ElementsAre("1\t" + Column("a") + "\t5(1-0-0:1)\t"));
}

TEST_F(MsgLogTrace, ReportsThatADestinationIsNotASCIIAndDiscardsEverything) {
  Add(5, L"\u00FC", 1, 0);
  mpTrace->CollectLogTrace();
  EXPECT_EQ(mpTrace->PrintAllLogTrace(), 0x80004005U);
  EXPECT_EQ(mpTrace->GetDstIndex(L"\u00FC"), 1);
  EXPECT_THAT(Print(), ElementsAre());
}

TEST_F(MsgLogTrace, ReportsAFullDiskAndDiscardsEverything) {
  Add(5, L"a", 1, 0);
  mpTrace->CollectLogTrace();
  mpTrace->SetOutputFileName(L"/dev/full");
  EXPECT_EQ(mpTrace->PrintAllLogTrace(), LogTrace::PRINT_FAILED);
  mpTrace->SetOutputFileName(mFolder.Wide("messages.txt").c_str());
  EXPECT_EQ(mpTrace->GetDstIndex(L"a"), 1);
  EXPECT_THAT(Print(), ElementsAre());
}

TEST_F(MsgLogTrace, RecordsReportsOnlyWhileItIsTurnedOn) {
  std::wstring destination = L"orders";
  EXPECT_EQ(YLog::MsgLogTrace::SendToLogTrace(THREAD, 17, destination, 10, 0), 1);
  EXPECT_TRUE(mpTrace->GetCurItem(THREAD).empty());
  YLog::MsgLogTrace::SetMsgLogTrace(true);
  EXPECT_EQ(YLog::MsgLogTrace::SendToLogTrace(THREAD, 17, destination, 10, 0), 0);
  EXPECT_EQ(YLog::MsgLogTrace::SendToLogTrace(THREAD, 17, destination, 10, 3), 1);
  YLog::MsgLogTrace::SetMsgLogTrace(false);
  EXPECT_EQ(YLog::MsgLogTrace::SendToLogTrace(THREAD, 17, destination, 10, 0), 1);
  EXPECT_EQ(Item(17, L"orders").count0, 1);
}

TEST_F(MsgLogTrace, IsTheSameObjectAfterTheLibraryIsStoppedAndStartedAgain) {
  Add(5, L"a", 1, 0);
  YLog::MsgLogTrace::Destroy();
  EXPECT_EQ(YLog::MsgLogTrace::getInstance(), mpTrace);
  YLog::MsgLogTrace::Init();
  YLog::MsgLogTrace::Init();
  EXPECT_EQ(YLog::MsgLogTrace::getInstance(), mpTrace);
  EXPECT_EQ(Item(5, L"a").count0, 1);
}

TEST(MsgLogTraceTurnedOff, DoesNotCreateTheObject) {
  TemporaryDirectory folder;
  YLog::MsgLogTrace::Init();
  EXPECT_EQ(YLog::MsgLogTrace::SendToLogTrace(THREAD, 17, L"orders", 10, 0), 1);
  const std::string later = WaitForTheNextMillisecond();
  YLog::MsgLogTrace* trace = YLog::MsgLogTrace::getInstance();
  trace->SetOutputFileName(folder.Wide("messages.txt").c_str());
  EXPECT_EQ(trace->PrintAllLogTrace(), 0U);
  EXPECT_GE(ReadFile(folder.Path() / "messages.txt"), later);
  EXPECT_EQ(trace->GetDstIndex(L"another"), 0);
}

TEST(MsgLogTraceNotStarted, DropsReports) {
  YLog::MsgLogTrace::SetMsgLogTrace(true);
  EXPECT_EQ(YLog::MsgLogTrace::SendToLogTrace(THREAD, 17, L"orders", 10, 0), 1);
  YLog::MsgLogTrace::Init();
  EXPECT_TRUE(YLog::MsgLogTrace::getInstance()->GetCurItem(THREAD).empty());
  EXPECT_EQ(YLog::MsgLogTrace::SendToLogTrace(THREAD, 17, L"orders", 10, 0), 0);
}

TEST(MsgLogTraceNotStarted, ThrowsWhenTheObjectIsRequested) {
  try {
    YLog::MsgLogTrace::getInstance();
    FAIL() << "nothing was thrown";
  } catch (const YBase::ExceptionImpl<YBase::Message>& failure) {
    EXPECT_THAT(failure.what(), StartsWith("YLog::MsgLogTrace::getInstance: "));
  }
}

}  // namespace

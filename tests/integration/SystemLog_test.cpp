#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/YLog.h>

#include "support/ChildProcess.h"
#include "support/ClosedDescriptors.h"
#include "support/SystemLogDaemon.h"
#include "support/WaitUntil.h"
#include "support/WaitingThread.h"

namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using Record = Support::SystemLogDaemon::Record;
using Severity = YLog::Destination_SystemLog::MessageSeverity;

constexpr int INFORMATION = 14;
constexpr int WARNING = 12;
constexpr int ERROR = 11;
constexpr int EMERGENCY = 8;

class SystemLog : public testing::Test {
 protected:
  void Log(const std::string& text) const {
    mLog->LogMessage(text.c_str(), YLog::Destination_SystemLog::SeverityInformation, 0);
  }
  void LogWithID(unsigned messageID) const {
    const YBase::SmartPtrI<YLog::MessageHeader> header = YLog::CreateMessageHeader();
    header->SetMessageID(messageID);
    mLog->LogMessage("text", *header);
  }

  // The first member, because threads keep the devices that they were started with.
  Support::SystemLogDaemon mDaemon;
  const YLog::Initializer mInitializer;
  const YBase::SmartPtrI<YLog::Destination_SystemLog> mLog = YLog::GetDestination_SystemLog();
};

class SystemLogWithDaemon : public SystemLog {
 protected:
  SystemLogWithDaemon() { mDaemon.Start(); }
};

/// A thread that logs while the daemon has stopped reading, and therefore waits in the C library.
class WaitingThread {
 public:
  WaitingThread(Support::SystemLogDaemon& daemon, const YLog::Destination_SystemLog& log) {
    daemon.StopReading();
    daemon.FillUp();
    mThread = std::jthread([this, &log] {
      mID = Support::ThreadID();
      log.LogMessage("waiting", YLog::Destination_SystemLog::SeverityInformation, 0);
      mbReturned = true;
    });
    mbWaits = Support::WaitUntil([this] { return Support::IsWaitingInSystemCall(mID, SYS_sendto); });
  }

  bool Waits() const { return mbWaits && !mbReturned; }
  void Join() { mThread.join(); }

 private:
  std::atomic<pid_t> mID{0};
  std::atomic<bool> mbReturned{false};
  bool mbWaits = false;
  std::jthread mThread;
};

TEST_F(SystemLogWithDaemon, NamesTheApplicationByDefault) {
  Log("text");
  EXPECT_THAT(mDaemon.ReadRecords(), ElementsAre(Record{INFORMATION, "Vellatorquine Application", "text"}));
}

TEST_F(SystemLogWithDaemon, NamesTheApplicationAsSet) {
  mLog->SetApplicationName("orders");
  Log("before");
  mLog->SetApplicationName("orders of the west");
  Log("after");
  EXPECT_THAT(mDaemon.ReadRecords(), ElementsAre(Record{INFORMATION, "orders", "before"},
                                                 Record{INFORMATION, "orders of the west", "after"}));
}

TEST_F(SystemLogWithDaemon, TakesThePriorityFromTheMessageID) {
  for (const unsigned messageID : {0x80000001U, 0x40000001U, 0x00000001U, 0xC0000001U}) LogWithID(messageID);
  std::vector<int> priorities;
  for (const Record& record : mDaemon.ReadRecords()) priorities.push_back(record.mPriority);
  EXPECT_THAT(priorities, ElementsAre(ERROR, WARNING, INFORMATION, INFORMATION));
}

TEST_F(SystemLogWithDaemon, SendsAnUnknownSeverityWithTheHighestPriority) {
  mLog->SetApplicationName("orders");
  mLog->LogMessage("text", static_cast<Severity>(7), 0);
  EXPECT_THAT(mDaemon.ReadRecords(), ElementsAre(Record{EMERGENCY, "orders", "text"}));
}

TEST_F(SystemLogWithDaemon, SendsHeaderAndLinesAsOneEntry) {
  mLog->SetApplicationName("orders");
  const YBase::SmartPtrI<YLog::MessageHeader> header = YLog::CreateMessageHeader();
  mLog->LogMessage("first\r\n\r\nsecond\n", *header);
  const std::string text = std::string(header->ToString()) + " first\nsecond";
  EXPECT_THAT(mDaemon.ReadRecords(), ElementsAre(Record{INFORMATION, "orders", text}));
}

TEST_F(SystemLogWithDaemon, SendsConversionSpecifiersUnchanged) {
  mLog->SetApplicationName("orders");
  Log("100%s %n %d%% %");
  EXPECT_THAT(mDaemon.ReadRecords(), ElementsAre(Record{INFORMATION, "orders", "100%s %n %d%% %"}));
}

TEST_F(SystemLogWithDaemon, SendsControlBytesAndInvalidUTF8Unchanged) {
  mLog->SetApplicationName("orders");
  const std::string text = "tab\tbell\a\x01 \xC3\xA4 \xFF\xC3 end";
  Log(text);
  EXPECT_THAT(mDaemon.ReadRecords(), ElementsAre(Record{INFORMATION, "orders", text}));
}

TEST_F(SystemLogWithDaemon, SendsTheWholeOfARecordOf100Kilobytes) {
  mLog->SetApplicationName("orders");
  std::string text;
  for (int number = 0; text.size() < 100'000; ++number) text += std::to_string(number) + '\n';
  text += "end";
  Log(text);
  EXPECT_THAT(mDaemon.ReadRecords(), ElementsAre(Record{INFORMATION, "orders", text}));
}

TEST_F(SystemLogWithDaemon, ReceivesMessagesLoggedThroughARouter) {
  mLog->SetApplicationName("orders");
  const YBase::SmartPtrI<YLog::Router> router =
      YLog::CreateRouter("Kernel", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  YDataType::ObjectCollection<YLog::Destination> destinations;
  destinations.Add(mLog);
  router->GetDispatcher()->SetDestinations(destinations);
  router->LogMessage("text", 0x80000001U, nullptr, nullptr, 0);
  EXPECT_THAT(
      mDaemon.ReadRecords(),
      ElementsAre(AllOf(Field(&Record::mPriority, ERROR),
                        Field(&Record::mText, EndsWith("][Kernel][Info][0x80000001][UID:0][SID:0][OID:0] "
                                                       "text")))));
}

TEST_F(SystemLogWithDaemon, ReceivesEveryRecordOfSeveralThreadsUnderOneOfTheNames) {
  constexpr int THREADS = 4;
  constexpr int RECORDS = 100;
  mLog->SetApplicationName("name 0");
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < THREADS; ++thread) {
      threads.emplace_back([this] {
        for (int number = 0; number < RECORDS; ++number) Log("text");
      });
    }
    for (int number = 1; number < RECORDS; ++number) {
      mLog->SetApplicationName(("name " + std::to_string(number)).c_str());
    }
  }
  const std::vector<Record> records = mDaemon.ReadRecords();
  EXPECT_THAT(records, SizeIs(THREADS * RECORDS));
  EXPECT_THAT(records,
              Each(AllOf(Field(&Record::mName, StartsWith("name ")), Field(&Record::mText, "text"))));
}

TEST_F(SystemLogWithDaemon, IsFoundAgainAfterARestart) {
  mLog->SetApplicationName("orders");
  Log("before");
  mDaemon.Stop();
  Log("lost");
  mDaemon.Start();
  Log("after");
  EXPECT_THAT(mDaemon.ReadRecords(),
              ElementsAre(Record{INFORMATION, "orders", "before"}, Record{INFORMATION, "orders", "after"}));
}

TEST_F(SystemLogWithDaemon, ReceivesNothingThatAHostWritesToClosedDescriptors) {
  mLog->SetApplicationName("orders");
  for (const int closed : Support::CLOSED_IN_ANY_WAY) {
    EXPECT_EQ(Support::ChildProcess([&] {
                Support::CloseDescriptors(closed);
                Log("text");
                return Support::UseClosed(closed);
              }).Wait(),
              0)
        << "closed: " << closed;
  }
  EXPECT_THAT(mDaemon.ReadRecords(), AllOf(SizeIs(7), Each(Record{INFORMATION, "orders", "text"})));
}

TEST_F(SystemLogWithDaemon, ReconnectionDoesNotUseAClosedStandardDescriptor) {
  mLog->SetApplicationName("orders");
  Log("before");
  close(STDIN_FILENO);
  mDaemon.Stop();
  Log("lost");
  mDaemon.Start();
  Log("after");
  EXPECT_TRUE(Support::IsClosed(STDIN_FILENO));
  EXPECT_THAT(mDaemon.ReadRecords(),
              ElementsAre(Record{INFORMATION, "orders", "before"}, Record{INFORMATION, "orders", "after"}));
}

TEST_F(SystemLogWithDaemon, CallsWaitWhileItHasStoppedReading) {
  mLog->SetApplicationName("orders");
  WaitingThread thread(mDaemon, *mLog);
  EXPECT_TRUE(thread.Waits());
  mDaemon.ResumeReading();
  thread.Join();
  EXPECT_THAT(mDaemon.ReadRecords(), ElementsAre(Record{INFORMATION, "orders", "waiting"}));
}

TEST_F(SystemLogWithDaemon, ReceivesTheRecordOfAChildForkedDuringAWaitingCall) {
  mLog->SetApplicationName("orders");
  WaitingThread thread(mDaemon, *mLog);
  EXPECT_TRUE(thread.Waits());
  std::atomic<pid_t> forkingThread{0};
  int status = -1;
  std::jthread fork([&] {
    forkingThread = Support::ThreadID();
    status = Support::ChildProcess([this] {
               Log("from the child");
               return 0;
             }).Wait();
  });
  EXPECT_TRUE(Support::WaitUntil([&] { return Support::IsWaitingInSystemCall(forkingThread, SYS_futex); }));
  EXPECT_TRUE(thread.Waits());
  mDaemon.ResumeReading();
  fork.join();
  thread.Join();
  EXPECT_EQ(status, 0);
  EXPECT_THAT(mDaemon.ReadRecords(), ElementsAre(Record{INFORMATION, "orders", "waiting"},
                                                 Record{INFORMATION, "orders", "from the child"}));
}

TEST_F(SystemLog, WritesToTheConsoleWithoutADaemon) {
  mLog->SetApplicationName("orders");
  Log("text");
  EXPECT_THAT(mDaemon.ReadConsole(), EndsWith("orders: text\r\n"));
}

TEST_F(SystemLog, ReturnsWithoutADaemonOrAConsole) {
  ASSERT_EQ(unlink("/dev/console"), 0);
  Log("lost");
  mDaemon.Start();
  EXPECT_THAT(mDaemon.ReadRecords(), IsEmpty());
}

}  // namespace

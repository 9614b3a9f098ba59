#include "Destinations/Destination_SystemLog_Impl.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <YLog/Initializer.h>
#include <YLog/MessageBody.h>
#include <YLog/MessageHeader.h>

#include "Log/Destinations/SystemLogCalls.h"
#include "support/BlockedThread.h"
#include "support/CancelledThread.h"
#include "support/ChildProcess.h"
#include "support/New.h"
#include "support/WaitUntil.h"
#include "support/WaitingThread.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using YBase::SmartPtrI;
using YLog::Destination_SystemLog;
using YLog::Destination_SystemLog_Impl;

const std::string REGISTERS_DEFAULT = "openlog(Vellatorquine Application, 2, 8)";

class SystemLogCalls : public testing::Test {
 protected:
  void Log(const char* text = "text") const { LogWithSeverity(text, 0); }
  void LogWithSeverity(const char* text, unsigned severity) const {
    mLog->LogMessage(text, static_cast<Destination_SystemLog::MessageSeverity>(severity), 0);
  }
  std::vector<std::string> Calls() const { return mCalls.Get(); }

  Support::SystemLogCalls mCalls;
  SmartPtrI<Destination_SystemLog_Impl> mLog = Support::New<Destination_SystemLog_Impl>();
};

TEST_F(SystemLogCalls, BeginWithTheFirstRecord) {
  EXPECT_THAT(Calls(), IsEmpty());
  Log();
  Log();
  EXPECT_THAT(Calls(), ElementsAre(REGISTERS_DEFAULT, "syslog(14, %s, text) as Vellatorquine Application",
                                   "syslog(14, %s, text) as Vellatorquine Application"));
}

TEST_F(SystemLogCalls, ContainTheCallStackWithoutALineFeedAtTheEnd) {
  constexpr unsigned ID = 300;
  mLog->SetCallstackMessageIDs(&ID, 1);
  const SmartPtrI<YLog::MessageHeader> header = YLog::CreateMessageHeader();
  header->SetMessageID(ID);
  mLog->LogMessage("text", *header);
  const std::string call = Calls().at(1);
  EXPECT_THAT(call, testing::HasSubstr(" text\n--------- callstack ---------\n"));
  EXPECT_THAT(call, testing::HasSubstr("\n-----------------------------) as "));
}

TEST_F(SystemLogCalls, ShowStructuredMessagesInTheLanguageOfTheDestination) {
  YBase::Message message("disk full");
  message.SetLocalizedText(0x0407, "Platte voll");
  const auto body = YLog::CreateMessageBody();
  body->SetMessage(message);
  mLog->SetLanguageID(0x0407);
  mLog->LogMessage(*YLog::CreateMessageHeader(), *body);
  EXPECT_THAT(Calls().at(1), testing::HasSubstr(" Platte voll) as "));
}

TEST_F(SystemLogCalls, RegisterTheNameAtOnce) {
  mLog->SetApplicationName("orders");
  EXPECT_THAT(Calls(), ElementsAre("openlog(orders, 2, 8)"));
  Log();
  EXPECT_THAT(Calls(), ElementsAre("openlog(orders, 2, 8)", "syslog(14, %s, text) as orders"));
}

TEST_F(SystemLogCalls, DoNotRegisterTheSameNameAgain) {
  mLog->SetApplicationName("orders");
  mLog->SetApplicationName("orders");
  EXPECT_THAT(Calls(), ElementsAre("openlog(orders, 2, 8)"));
}

TEST_F(SystemLogCalls, CloseBeforeTheyRegisterAnotherName) {
  Log();
  mLog->SetApplicationName("orders");
  Log();
  EXPECT_THAT(Calls(), ElementsAre(REGISTERS_DEFAULT, "syslog(14, %s, text) as Vellatorquine Application",
                                   "closelog()", "openlog(orders, 2, 8)", "syslog(14, %s, text) as orders"));
}

TEST_F(SystemLogCalls, KeepACopyOfTheName) {
  std::string name(100, 'n');
  mLog->SetApplicationName(name.c_str());
  std::fill(name.begin(), name.end(), 'x');
  Log();
  EXPECT_EQ(Calls().back(), "syslog(14, %s, text) as " + std::string(100, 'n'));
}

TEST_F(SystemLogCalls, IgnoreAnEmptyFirstName) {
  mLog->SetApplicationName("");
  EXPECT_THAT(Calls(), IsEmpty());
  Log();
  EXPECT_EQ(Calls().front(), REGISTERS_DEFAULT);
}

TEST_F(SystemLogCalls, RegisterTheEmptyNameAfterAnother) {
  mLog->SetApplicationName("orders");
  mLog->SetApplicationName("");
  EXPECT_THAT(Calls(), ElementsAre("openlog(orders, 2, 8)", "closelog()", "openlog(, 2, 8)"));
}

TEST_F(SystemLogCalls, TakeTheSeverityFromTheTwoHighestBits) {
  const YLog::Initializer initializer;
  const SmartPtrI<YLog::MessageHeader> header = YLog::CreateMessageHeader();
  const std::pair<unsigned, std::string> expected[] = {
      {0x80000000U, "11"}, {0xBFFFFFFFU, "11"}, {0x40000000U, "12"}, {0x7FFFFFFFU, "12"},
      {0x00000000U, "14"}, {0x3FFFFFFFU, "14"}, {0xC0000000U, "14"}, {0xFFFFFFFFU, "14"},
  };
  for (const auto& [messageID, priority] : expected) {
    header->SetMessageID(messageID);
    mLog->LogMessage("text", *header);
    EXPECT_EQ(Calls().back(),
              "syslog(" + priority + ", %s, " + header->ToString() + " text) as Vellatorquine Application");
  }
}

TEST_F(SystemLogCalls, HaveThePriorityOfTheSeverity) {
  const std::pair<unsigned, std::string> expected[] = {
      {Destination_SystemLog::SeverityInformation, "14"},
      {Destination_SystemLog::SeverityWarning, "12"},
      {Destination_SystemLog::SeverityError, "11"},
      {3, "8"},
      {7, "8"},
      {std::numeric_limits<unsigned>::max(), "8"},
  };
  for (const auto& [severity, priority] : expected) {
    LogWithSeverity("text", severity);
    EXPECT_EQ(Calls().back(), "syslog(" + priority + ", %s, text) as Vellatorquine Application");
  }
}

TEST_F(SystemLogCalls, PassTheLinesOfARecordTogetherWithoutALineFeedAtTheEnd) {
  const YLog::Initializer initializer;
  const SmartPtrI<YLog::MessageHeader> header = YLog::CreateMessageHeader();
  mLog->LogMessage("\n100%s\r\n\r\n%n\n", *header);
  EXPECT_EQ(Calls().back(),
            "syslog(14, %s, " + std::string(header->ToString()) + " 100%s\n%n) as Vellatorquine Application");
}

TEST_F(SystemLogCalls, EndWhenTheDestinationIsDestroyed) {
  mLog->SetApplicationName("orders");
  mLog = nullptr;
  EXPECT_THAT(Calls(), ElementsAre("openlog(orders, 2, 8)", "closelog()"));
}

TEST_F(SystemLogCalls, AreFinishedByACancelledThread) {
  // Like those of the C library, each of these calls is a cancellation point.
  mCalls.OnCall([](const std::string&) { pthread_testcancel(); });
  EXPECT_TRUE(Support::FinishesBeforeItIsCancelled([this] {
    Log();
    mLog->SetApplicationName("orders");
    mLog = nullptr;
  }));
  mCalls.OnCall(nullptr);
  EXPECT_THAT(Calls(), ElementsAre(REGISTERS_DEFAULT, "syslog(14, %s, text) as Vellatorquine Application",
                                   "closelog()", "openlog(orders, 2, 8)", "closelog()"));
}

TEST_F(SystemLogCalls, EndWhenTheModuleStopsAndDoNotCloseTheConnectionOfTheNextModule) {
  SmartPtrI<Destination_SystemLog> previous;
  {
    const YLog::Initializer initializer;
    previous = YLog::GetDestination_SystemLog();
    previous->SetApplicationName("orders");
  }
  EXPECT_THAT(Calls(), ElementsAre("openlog(orders, 2, 8)", "closelog()"));
  const YLog::Initializer initializer;
  YLog::GetDestination_SystemLog()->SetApplicationName("invoices");
  previous = nullptr;
  EXPECT_EQ(Calls().back(), "openlog(invoices, 2, 8)");
}

TEST_F(SystemLogCalls, RegisterTheSameNameAgainAfterTheEnd) {
  mLog->SetApplicationName("orders");
  mLog->Close();
  mLog->SetApplicationName("orders");
  EXPECT_THAT(Calls(), ElementsAre("openlog(orders, 2, 8)", "closelog()", "openlog(orders, 2, 8)"));
}

TEST_F(SystemLogCalls, AreNotMadeForAnUnusedDestination) {
  mLog = nullptr;
  EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(SystemLogCalls, AreNotMadeForNull) {
  EXPECT_DEBUG_DEATH(mLog->SetApplicationName(nullptr), "name != nullptr");
  EXPECT_DEBUG_DEATH(LogWithSeverity(nullptr, 0), "text != nullptr");
  EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(SystemLogCalls, RegisterOnceForThreadsThatLogAtOnce) {
  constexpr int THREADS = 8;
  std::atomic<int> ready{0};
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < THREADS; ++thread) {
      threads.emplace_back([&] {
        for (++ready; ready < THREADS;) std::this_thread::yield();
        Log();
      });
    }
  }
  const std::vector<std::string> calls = Calls();
  EXPECT_EQ(calls.front(), REGISTERS_DEFAULT);
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "syslog(14, %s, text) as Vellatorquine Application"),
            THREADS);
  EXPECT_EQ(calls.size(), THREADS + 1U);
}

/// Holds a thread inside a call whose description begins with `begin` until it is released.
class Barrier {
 public:
  Barrier(Support::SystemLogCalls& calls, const std::string& begin) : mCalls(calls) {
    calls.OnCall([this, begin](const std::string& call) {
      if (!call.starts_with(begin)) return;
      mbReached = true;
      mbReached.notify_all();
      mbReleased.wait(false);
      mbLeft = true;
    });
  }

  ~Barrier() { mCalls.OnCall(nullptr); }
  Barrier(const Barrier&) = delete;
  Barrier& operator=(const Barrier&) = delete;

  void WaitUntilReached() const { mbReached.wait(false); }
  void Release() {
    mbReleased = true;
    mbReleased.notify_all();
  }
  bool IsLeft() const { return mbLeft; }

 private:
  Support::SystemLogCalls& mCalls;
  std::atomic<bool> mbReached{false};
  std::atomic<bool> mbReleased{false};
  std::atomic<bool> mbLeft{false};
};

TEST_F(SystemLogCalls, KeepANameThatIsSetDuringTheFirstRecord) {
  Barrier registration(mCalls, "openlog");
  {
    const std::jthread naming([this] { mLog->SetApplicationName("orders"); });
    registration.WaitUntilReached();
    const Support::BlockedThread logging([this] { Log(); });
    EXPECT_TRUE(logging.Waits());
    registration.Release();
  }
  EXPECT_THAT(Calls(), ElementsAre("openlog(orders, 2, 8)", "syslog(14, %s, text) as orders"));
}

TEST_F(SystemLogCalls, SendNoRecordBetweenTwoNames) {
  mLog->SetApplicationName("orders");
  Barrier closing(mCalls, "closelog");
  {
    const std::jthread naming([this] { mLog->SetApplicationName("invoices"); });
    closing.WaitUntilReached();
    const Support::BlockedThread logging([this] { Log(); });
    EXPECT_TRUE(logging.Waits());
    closing.Release();
  }
  EXPECT_THAT(Calls(), ElementsAre("openlog(orders, 2, 8)", "closelog()", "openlog(invoices, 2, 8)",
                                   "syslog(14, %s, text) as invoices"));
}

TEST_F(SystemLogCalls, RunConcurrently) {
  mLog->SetApplicationName("orders");
  Barrier sending(mCalls, "syslog(14, %s, first)");
  const std::jthread first([this] { Log("first"); });
  sending.WaitUntilReached();
  Log("second");
  EXPECT_FALSE(sending.IsLeft());
  EXPECT_EQ(Calls().back(), "syslog(14, %s, second) as orders");
  sending.Release();
}

TEST_F(SystemLogCalls, AreFinishedByAllThreadsBeforeAFork) {
  mLog->SetApplicationName("orders");
  Barrier sending(mCalls, "syslog");
  int status = -1;
  {
    const std::jthread logging([this] { Log(); });
    sending.WaitUntilReached();
    const Support::BlockedThread forking(
        [&] { status = Support::ChildProcess([&] { return sending.IsLeft() ? 0 : 1; }).Wait(); });
    EXPECT_TRUE(forking.Waits());
    EXPECT_FALSE(sending.IsLeft());
    sending.Release();
  }
  EXPECT_EQ(status, 0);
}

}  // namespace

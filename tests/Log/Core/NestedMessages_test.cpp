#include <algorithm>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <YLog/YLog.h>

#include "support/ConfigurableHook.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::ConfigurableHook;
using Support::Destinations;
using Support::New;
using Support::Record;
using Support::RecordingDestination;
using YBase::SmartPtrI;
using YLog::MessageHeader;

/// A destination of the dispatcher "Outer" logs to the dispatcher "Inner".
class NestedMessages : public testing::Test {
 protected:
  void SetOuter(std::initializer_list<SmartPtrI<YLog::Destination>> destinations) {
    mpOuter->SetDestinations(Destinations(destinations));
  }
  void LogOuter() const { mpOuter->LogMessage(*mpLogger, "outer", 1, "outer.cpp", "Outer", 1); }
  void LogInner() const { mpInner->LogMessage(*mpLogger, "inner", 2, "inner.cpp", "Inner", 2); }

  const YLog::Initializer mInitializer;
  const SmartPtrI<YLog::Logger> mpLogger = YLog::GetLogger("Kernel", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const SmartPtrI<YLog::Dispatcher> mpOuter = YLog::CreateDispatcher("Outer");
  const SmartPtrI<YLog::Dispatcher> mpInner = YLog::CreateDispatcher("Inner");
  const SmartPtrI<RecordingDestination> mpInnerRecords = New<RecordingDestination>();

 private:
  void SetUp() override { mpInner->SetDestinations(Destinations({mpInnerRecords})); }
};

TEST_F(NestedMessages, LeaveTheOuterMessageUnchanged) {
  const auto last = New<RecordingDestination>();
  SetOuter({New<RecordingDestination>([&](auto, const auto&) { LogInner(); }), last});
  LogOuter();
  const Record outer = last->Records().at(0);
  EXPECT_EQ("outer", outer.text);
  EXPECT_EQ("Outer", outer.dispatcherName);
  EXPECT_EQ(1U, outer.messageID);
  EXPECT_EQ("outer.cpp", outer.fileName);
  EXPECT_NE(std::string::npos, outer.line.find("[Outer][0x00000001]"));
}

TEST_F(NestedMessages, CarryTheSameFieldsAsTheThreadsOwnHeader) {
  YLog::SetThreadSpecificLogHeaders({"alice", "s1", "o1"});
  YLog::SetServerInstanceName(L"Inst1");
  const auto outerRecords = New<RecordingDestination>([&](auto, const auto&) { LogInner(); });
  SetOuter({outerRecords});
  LogOuter();
  const Record outer = outerRecords->Records().at(0);
  const Record inner = mpInnerRecords->Records().at(0);
  EXPECT_EQ("inner", inner.text);
  EXPECT_EQ("Inner", inner.dispatcherName);
  EXPECT_EQ(2U, inner.messageID);
  EXPECT_EQ("Inst1", inner.serverInstanceName);
  EXPECT_NE("", inner.computerName);
  EXPECT_EQ(outer.computerName, inner.computerName);
  EXPECT_EQ(outer.processID, inner.processID);
  EXPECT_EQ(outer.threadID, inner.threadID);
  EXPECT_TRUE(inner.line.ends_with("[UID:alice][SID:s1][OID:o1]"));
}

TEST_F(NestedMessages, HaveTheirOwnHeadersAtEveryDepth) {
  std::vector<const MessageHeader*> headers;
  mpInner->SetDestinations(Destinations({New<RecordingDestination>([&](auto, const MessageHeader& header) {
    headers.push_back(&header);
    if (headers.size() < 4) LogInner();
    EXPECT_STREQ("Inner", header.GetDispatcherName());
  })}));
  SetOuter({New<RecordingDestination>([&](auto, const MessageHeader& header) {
    headers.push_back(&header);
    LogInner();
    EXPECT_STREQ("Outer", header.GetDispatcherName());
  })});
  LogOuter();
  ASSERT_EQ(4U, headers.size());
  std::sort(headers.begin(), headers.end());
  EXPECT_EQ(headers.end(), std::unique(headers.begin(), headers.end()));
}

TEST_F(NestedMessages, UseTheThreadsHeaderAgainAfterADestinationThrew) {
  std::vector<const MessageHeader*> headers;
  bool fail = true;
  const auto destination = New<RecordingDestination>([&](auto, const MessageHeader& header) {
    headers.push_back(&header);
    LogInner();
    if (fail) throw std::runtime_error("full");
  });
  SetOuter({destination});
  EXPECT_THROW(LogOuter(), std::runtime_error);
  fail = false;
  LogOuter();
  EXPECT_EQ(headers.at(0), headers.at(1));
}

TEST_F(NestedMessages, PropagateExceptionsOfTheirDestinationToTheOuterOne) {
  mpInner->SetDestinations(Destinations(
      {New<RecordingDestination>([](auto, const auto&) { throw std::runtime_error("inner is full"); })}));
  const auto last = New<RecordingDestination>();
  SetOuter(
      {New<RecordingDestination>([&](auto, const auto&) { EXPECT_THROW(LogInner(), std::runtime_error); }),
       last});
  LogOuter();
  EXPECT_EQ("Outer", last->Records().at(0).dispatcherName);
}

TEST_F(NestedMessages, OfAnotherThreadUseThatThreadsHeader) {
  const auto last = New<RecordingDestination>();
  SetOuter({New<RecordingDestination>([&](auto, const auto&) { std::jthread([&] { LogInner(); }); }), last});
  LogOuter();
  EXPECT_NE(last->Records().at(0).threadID, mpInnerRecords->Records().at(0).threadID);
  EXPECT_EQ("Outer", last->Records().at(0).dispatcherName);
}

TEST_F(NestedMessages, LoggedByAHookLeaveTheOuterMessageUnchanged) {
  YLog::SetConfigurationHook(New<ConfigurableHook>([&](auto&, auto&) { LogInner(); }).Get());
  const auto last = New<RecordingDestination>();
  SetOuter({New<RecordingDestination>(
                [&](auto, const auto&) { mpLogger->Dispatchers().ObtainCookie("new in the destination"); }),
            last});
  LogOuter();
  EXPECT_EQ(1U, mpInnerRecords->Records().size());
  EXPECT_EQ("Outer", last->Records().at(0).dispatcherName);
}

TEST_F(NestedMessages, ShowTheIdsThatTheOuterDestinationHasSet) {
  SetOuter({New<RecordingDestination>([&](auto, const auto&) {
    YLog::SetUserIDToThreadContext(L"bob");
    LogInner();
  })});
  LogOuter();
  EXPECT_EQ("bob", mpInnerRecords->Records().at(0).userID);
}

}  // namespace

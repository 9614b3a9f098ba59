#include <unistd.h>

#include <future>
#include <string>
#include <thread>

#include <YLog/YLog.h>

#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;
using Support::New;
using Support::Record;
using Support::RecordingDestination;

/// Returns the result of a function that runs on a new thread.
template <class Function>
auto OnNewThread(Function function) {
  return std::async(std::launch::async, function).get();
}

class ThreadContext : public testing::Test {
 protected:
  Record LogOne() const {
    const auto destination = New<RecordingDestination>();
    const auto dispatcher = YLog::CreateDispatcher("Info");
    dispatcher->SetDestinations(Destinations({destination}));
    dispatcher->LogMessage(*YLog::GetLogger("Kernel", YSynch::LOCK_STACK_CATEGORY_OBJECT), "text", 0, nullptr,
                           nullptr, 0);
    return destination->Records().at(0);
  }

 private:
  const YLog::Initializer mInitializer;
};

TEST_F(ThreadContext, EpisodeNumberBelongsToTheThreadAndBeginsWith0) {
  YLog::SetEpisodeNumber(7);
  EXPECT_EQ(7U, YLog::GetEpisodeNumber());
  EXPECT_EQ(0U, OnNewThread([] { return YLog::GetEpisodeNumber(); }));
  EXPECT_EQ(7U, YLog::GetEpisodeNumber());
}

TEST_F(ThreadContext, NewThreadHasNoIds) {
  const auto headers = OnNewThread([] { return YLog::GetThreadSpecificLogHeaders(); });
  EXPECT_EQ("", headers->userID);
  EXPECT_EQ("", headers->sessionID);
  EXPECT_EQ("", headers->objectID);
}

TEST_F(ThreadContext, KeepsIdsInUtf8) {
  YLog::SetUserIDToThreadContext(L"J\u00F6rg");
  YLog::SetSessionIDToThreadContext(L"\u20AC");
  YLog::SetObjectIDToThreadContext(L"\U0001F600");
  const auto headers = YLog::GetThreadSpecificLogHeaders();
  EXPECT_EQ("J\xC3\xB6rg", headers->userID);
  EXPECT_EQ("\xE2\x82\xAC", headers->sessionID);
  EXPECT_EQ("\xF0\x9F\x98\x80", headers->objectID);
  EXPECT_EQ(L"\U0001F600", YLog::GetObjectIDFromThreadContext());
}

TEST_F(ThreadContext, NullClearsAnId) {
  YLog::SetThreadSpecificLogHeaders({"u", "s", "o"});
  YLog::SetUserIDToThreadContext(nullptr);
  YLog::SetSessionIDToThreadContext(nullptr);
  YLog::SetObjectIDToThreadContext(nullptr);
  const auto headers = YLog::GetThreadSpecificLogHeaders();
  EXPECT_EQ("", headers->userID + headers->sessionID + headers->objectID);
  EXPECT_EQ(L"", YLog::GetObjectIDFromThreadContext());
}

TEST_F(ThreadContext, EmptyIdLeavesThePreviousOneUnchanged) {
  YLog::SetThreadSpecificLogHeaders({"alice", "s1", "o1"});
  YLog::SetThreadSpecificLogHeaders({"", "s2", ""});
  const auto headers = YLog::GetThreadSpecificLogHeaders();
  EXPECT_EQ("alice", headers->userID);
  EXPECT_EQ("s2", headers->sessionID);
  EXPECT_EQ("o1", headers->objectID);
}

TEST_F(ThreadContext, StoresTheSameBytesWhicheverWayAnIdIsSet) {
  YLog::SetThreadSpecificLogHeaders({"a\xFFz", "\xC3", std::string("cut\0off", 7)});
  const auto headers = YLog::GetThreadSpecificLogHeaders();
  EXPECT_EQ("a\xEF\xBF\xBDz", headers->userID);
  EXPECT_EQ("\xEF\xBF\xBD", headers->sessionID);
  EXPECT_EQ("cut", headers->objectID);
}

TEST_F(ThreadContext, ReturnsACopyOfTheIds) {
  YLog::SetThreadSpecificLogHeaders({"alice", "", ""});
  const auto headers = YLog::GetThreadSpecificLogHeaders();
  YLog::ClearThreadSpecificLogHeaders();
  EXPECT_EQ("alice", headers->userID);
  headers->userID = "bob";
  EXPECT_EQ("", YLog::GetThreadSpecificLogHeaders()->userID);
}

TEST_F(ThreadContext, MessagesShowTheIdsOfTheirThread) {
  YLog::SetThreadSpecificLogHeaders({"alice", "s1", "o1"});
  EXPECT_TRUE(LogOne().line.ends_with("[UID:alice][SID:s1][OID:o1]"));
}

TEST_F(ThreadContext, MessagesAfterClearingShowZeros) {
  YLog::SetThreadSpecificLogHeaders({"alice", "s1", "o1"});
  LogOne();
  YLog::ClearThreadSpecificLogHeaders();
  EXPECT_TRUE(LogOne().line.ends_with("[UID:0][SID:0][OID:0]"));
}

TEST_F(ThreadContext, EachThreadSeesItsOwnIds) {
  YLog::SetUserIDToThreadContext(L"alice");
  const Record other = OnNewThread([&] {
    YLog::SetUserIDToThreadContext(L"bob");
    return LogOne();
  });
  EXPECT_EQ("bob", other.userID);
  EXPECT_EQ("alice", LogOne().userID);
}

TEST_F(ThreadContext, MessagesCarryProcessAndThreadId) {
  const Record own = LogOne();
  EXPECT_EQ(static_cast<unsigned>(getpid()), own.processID);
  EXPECT_EQ(static_cast<unsigned long>(gettid()), own.threadID);
  const auto [threadID, other] = OnNewThread([&] { return std::pair(gettid(), LogOne()); });
  EXPECT_EQ(static_cast<unsigned long>(threadID), other.threadID);
}

TEST(ThreadContextWithoutModule, ThrowsWhileNoInitializerIsAlive) {
  EXPECT_THROW(YLog::SetEpisodeNumber(1), YBase::Message);
  EXPECT_THROW(YLog::GetThreadSpecificLogHeaders(), std::exception);
}

}  // namespace

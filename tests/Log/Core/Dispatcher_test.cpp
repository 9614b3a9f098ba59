#include <YLog/Dispatcher.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <YLog/YLog.h>

#include "support/Callbacks.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;
using Support::DispatcherCallback;
using Support::New;
using Support::Record;
using Support::RecordingDestination;
using testing::ElementsAre;
using YBase::SmartPtrI;

class Dispatcher : public testing::Test {
 protected:
  void Log(const char* text) const {
    mpDispatcher->LogMessage(*mpLogger, text, 300, "/src/main.cpp", "Run", 42);
  }

  const YLog::Initializer mInitializer;
  const SmartPtrI<YLog::Logger> mpLogger = YLog::GetLogger("Kernel", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const SmartPtrI<YLog::Dispatcher> mpDispatcher = YLog::CreateDispatcher("Error");
};

TEST_F(Dispatcher, KeepsACopyOfItsName) {
  std::string name = "Info";
  const auto dispatcher = YLog::CreateDispatcher(name.c_str());
  name = "Else";
  EXPECT_STREQ("Info", dispatcher->GetName());
}

TEST_F(Dispatcher, RefusesNullForItsName) {
  EXPECT_DEBUG_DEATH(YLog::CreateDispatcher(nullptr), "text != nullptr");
}

TEST_F(Dispatcher, RefusesNullForAText) {
  EXPECT_DEBUG_DEATH(Log(nullptr), "text != nullptr");
}

TEST_F(Dispatcher, IsEnabledWhileItHasDestinations) {
  EXPECT_FALSE(mpDispatcher->IsEnabled());
  mpDispatcher->SetDestinations(Destinations({New<RecordingDestination>()}));
  EXPECT_TRUE(mpDispatcher->IsEnabled());
  mpDispatcher->SetDestinations(Destinations());
  EXPECT_FALSE(mpDispatcher->IsEnabled());
}

TEST_F(Dispatcher, StampsTheHeader) {
  YLog::SetServerInstanceName(L"Inst\u00E9");
  const auto destination = New<RecordingDestination>();
  mpDispatcher->SetDestinations(Destinations({destination}));
  const YDataType::DateTime before = YDataType::DateTime::Now();
  Log("text");
  const Record record = destination->Records().at(0);
  EXPECT_EQ("text", record.text);
  EXPECT_GE((record.timestamp - before).GetTotalMilliseconds(), 0);
  EXPECT_GE((YDataType::DateTime::Now() - record.timestamp).GetTotalMilliseconds(), 0);
  EXPECT_EQ("Kernel", record.loggerName);
  EXPECT_EQ("Error", record.dispatcherName);
  EXPECT_EQ("/src/main.cpp", record.fileName);
  EXPECT_EQ("Run", record.funcName);
  EXPECT_EQ(42, record.lineNumber);
  EXPECT_EQ(300U, record.messageID);
  EXPECT_EQ("Inst\xC3\xA9", record.serverInstanceName);
}

TEST_F(Dispatcher, BuildsANewTextLineForEachMessage) {
  const auto destination = New<RecordingDestination>();
  mpDispatcher->SetDestinations(Destinations({destination}));
  Log("first");
  mpDispatcher->LogMessage(*mpLogger, "second", 0, nullptr, nullptr, 0);
  const std::vector<Record> records = destination->Records();
  EXPECT_TRUE(records.at(0).line.ends_with(
      "[Kernel][Error][0x0000012C][UID:0][SID:0][OID:0][main.cpp:Run at line:42]"));
  EXPECT_TRUE(records.at(1).line.ends_with("[Kernel][Error][UID:0][SID:0][OID:0]"));
  EXPECT_EQ("", records.at(1).fileName);
  EXPECT_EQ("", records.at(1).funcName);
}

TEST_F(Dispatcher, PassesTextsOnUnchanged) {
  const auto destination = New<RecordingDestination>();
  mpDispatcher->SetDestinations(Destinations({destination}));
  const std::string texts[] = {"", "\x01\r\n\t\x7F", "\xC3\x28\xFF", std::string(10'000, 'x')};
  for (const std::string& text : texts) Log(text.c_str());
  EXPECT_THAT(destination->Texts(), testing::ElementsAreArray(texts));
}

TEST_F(Dispatcher, CallsDestinationsInTheOrderOfTheList) {
  std::string order;
  const auto first = New<RecordingDestination>([&](auto, const auto&) { order += '1'; });
  const auto second = New<RecordingDestination>([&](auto, const auto&) { order += '2'; });
  mpDispatcher->SetDestinations(Destinations({second, first, second}));
  Log("text");
  EXPECT_EQ("212", order);
}

TEST_F(Dispatcher, GivesAllDestinationsTheSameHeader) {
  std::vector<const YLog::MessageHeader*> headers;
  const auto destination =
      New<RecordingDestination>([&](auto, const auto& header) { headers.push_back(&header); });
  mpDispatcher->SetDestinations(Destinations({destination, destination}));
  Log("text");
  EXPECT_EQ(headers.at(0), headers.at(1));
}

TEST_F(Dispatcher, IsEnabledByANullDestinationButSkipsIt) {
  mpDispatcher->SetDestinations(Destinations({nullptr}));
  EXPECT_TRUE(mpDispatcher->IsEnabled());
  Log("to nobody");
  const auto destination = New<RecordingDestination>();
  mpDispatcher->SetDestinations(Destinations({nullptr, destination, nullptr}));
  Log("text");
  EXPECT_THAT(destination->Texts(), ElementsAre("text"));
}

TEST_F(Dispatcher, DestinationsAfterOneThatThrowsReceiveNothing) {
  const auto first = New<RecordingDestination>();
  const auto second = New<RecordingDestination>([](auto, const auto&) { throw std::runtime_error("full"); });
  const auto third = New<RecordingDestination>();
  mpDispatcher->SetDestinations(Destinations({first, second, third}));
  EXPECT_THROW(Log("text"), std::runtime_error);
  EXPECT_THAT(first->Texts(), ElementsAre("text"));
  EXPECT_THAT(third->Texts(), ElementsAre());
}

TEST_F(Dispatcher, CallsCallbacksForEveryNewListEvenAnEmptyOne) {
  const auto callback = New<DispatcherCallback>(
      [&](YLog::Dispatcher& dispatcher) { EXPECT_EQ(mpDispatcher.Get(), &dispatcher); });
  mpDispatcher->RegisterCallback(callback.Get());
  mpDispatcher->SetDestinations(Destinations({New<RecordingDestination>()}));
  EXPECT_EQ(1, callback->GetCount());
  mpDispatcher->SetDestinations(Destinations());
  EXPECT_EQ(2, callback->GetCount());
  EXPECT_FALSE(mpDispatcher->IsEnabled());
}

TEST_F(Dispatcher, CallbackRegisteredTwiceIsCalledOnceAndUnregisteredByOneCall) {
  const auto callback = New<DispatcherCallback>();
  mpDispatcher->RegisterCallback(callback.Get());
  mpDispatcher->RegisterCallback(callback.Get());
  mpDispatcher->SetDestinations(Destinations());
  EXPECT_EQ(1, callback->GetCount());
  mpDispatcher->UnregisterCallback(callback.Get());
  mpDispatcher->SetDestinations(Destinations());
  EXPECT_EQ(1, callback->GetCount());
}

TEST_F(Dispatcher, HoldsACallbackUntilItIsUnregistered) {
  bool destroyed = false;
  auto callback = New<DispatcherCallback>(nullptr, [&] { destroyed = true; });
  const YLog::Dispatcher::Callback* const address = callback.Get();
  mpDispatcher->RegisterCallback(callback.Get());
  mpDispatcher->RegisterCallback(callback.Get());
  callback = nullptr;
  EXPECT_FALSE(destroyed);
  mpDispatcher->UnregisterCallback(address);
  EXPECT_TRUE(destroyed);
}

TEST_F(Dispatcher, IgnoresCallbacksThatAreNotRegistered) {
  const auto callback = New<DispatcherCallback>();
  mpDispatcher->UnregisterCallback(callback.Get());
  mpDispatcher->UnregisterCallback(nullptr);
  mpDispatcher->SetDestinations(Destinations());
  EXPECT_EQ(0, callback->GetCount());
}

TEST_F(Dispatcher, SkipsANullCallback) {
  const auto callback = New<DispatcherCallback>();
  mpDispatcher->RegisterCallback(nullptr);
  mpDispatcher->RegisterCallback(callback.Get());
  mpDispatcher->SetDestinations(Destinations());
  EXPECT_EQ(1, callback->GetCount());
  mpDispatcher->UnregisterCallback(nullptr);
}

TEST_F(Dispatcher, CallsCallbacksInTheOrderOfTheirAddresses) {
  std::vector<const void*> called;
  std::vector<SmartPtrI<DispatcherCallback>> callbacks(5);
  std::vector<const void*> addresses;
  for (auto& callback : callbacks) {
    callback = New<DispatcherCallback>([&called, &callback](auto&) {
      called.push_back(static_cast<YLog::Dispatcher::Callback*>(callback.Get()));
    });
    addresses.push_back(static_cast<YLog::Dispatcher::Callback*>(callback.Get()));
    mpDispatcher->RegisterCallback(callback.Get());
  }
  std::sort(addresses.begin(), addresses.end(), std::less<>());
  mpDispatcher->SetDestinations(Destinations());
  EXPECT_EQ(addresses, called);
}

TEST_F(Dispatcher, AppliesTheNewListButCallsNoMoreCallbacksAfterOneThatThrows) {
  int called = 0;
  const auto fail = [&](auto&) {
    ++called;
    throw std::runtime_error("callback");
  };
  const auto first = New<DispatcherCallback>(fail);
  const auto second = New<DispatcherCallback>(fail);
  mpDispatcher->RegisterCallback(first.Get());
  mpDispatcher->RegisterCallback(second.Get());
  EXPECT_THROW(mpDispatcher->SetDestinations(Destinations({New<RecordingDestination>()})),
               std::runtime_error);
  EXPECT_EQ(1, called);
  EXPECT_TRUE(mpDispatcher->IsEnabled());
}

TEST_F(Dispatcher, CallbackMayCallTheDispatcher) {
  const auto destination = New<RecordingDestination>();
  const auto late = New<DispatcherCallback>();
  SmartPtrI<DispatcherCallback> callback;
  callback = New<DispatcherCallback>([&](YLog::Dispatcher& dispatcher) {
    EXPECT_STREQ("Error", dispatcher.GetName());
    EXPECT_TRUE(dispatcher.IsEnabled());
    dispatcher.UnregisterCallback(callback.Get());
    dispatcher.RegisterCallback(late.Get());
    Log("from the callback");
    dispatcher.SetDestinations(Destinations());
  });
  mpDispatcher->RegisterCallback(callback.Get());
  mpDispatcher->SetDestinations(Destinations({destination}));
  EXPECT_THAT(destination->Texts(), ElementsAre("from the callback"));
  EXPECT_EQ(1, late->GetCount());
  EXPECT_FALSE(mpDispatcher->IsEnabled());
}

TEST_F(Dispatcher, ReleasesTheOldDestinationsInReverseOrderAfterTheCallbacks) {
  std::string order;
  mpDispatcher->SetDestinations(Destinations({New<RecordingDestination>(nullptr, [&] { order += "1"; }),
                                              New<RecordingDestination>(nullptr, [&] { order += "2"; }),
                                              New<RecordingDestination>(nullptr, [&] { order += "3"; })}));
  const auto callback = New<DispatcherCallback>([&](auto&) { order += "changed "; });
  mpDispatcher->RegisterCallback(callback.Get());
  mpDispatcher->SetDestinations(Destinations());
  EXPECT_EQ("changed 321", order);
}

TEST_F(Dispatcher, DestructorsOfTheClientMayCallTheDispatcher) {
  const auto look = [dispatcher = mpDispatcher.Get()] {
    dispatcher->UnregisterCallback(nullptr);
    EXPECT_FALSE(dispatcher->IsEnabled());
  };
  const YLog::Dispatcher::Callback* address = nullptr;
  {
    const auto callback = New<DispatcherCallback>(nullptr, look);
    address = callback.Get();
    mpDispatcher->RegisterCallback(callback.Get());
    mpDispatcher->SetDestinations(Destinations({New<RecordingDestination>(nullptr, look)}));
  }
  mpDispatcher->SetDestinations(Destinations());
  mpDispatcher->UnregisterCallback(address);
}

TEST_F(Dispatcher, DestinationReplacedWhileLoggingOutlivesTheCall) {
  bool destroyed = false;
  const auto last = New<RecordingDestination>();
  mpDispatcher->SetDestinations(Destinations({New<RecordingDestination>(
                                                  [&](auto, const auto&) {
                                                    mpDispatcher->SetDestinations(Destinations());
                                                    EXPECT_FALSE(destroyed);
                                                  },
                                                  [&] { destroyed = true; }),
                                              last}));
  Log("text");
  EXPECT_TRUE(destroyed);
  EXPECT_THAT(last->Texts(), ElementsAre("text"));
}

TEST_F(Dispatcher, ReleasesItsCallbacksAndDestinationsOnDestruction) {
  std::string order;
  auto dispatcher = YLog::CreateDispatcher("Info");
  dispatcher->SetDestinations(Destinations({New<RecordingDestination>(nullptr, [&] { order += "1"; }),
                                            New<RecordingDestination>(nullptr, [&] { order += "2"; })}));
  dispatcher->RegisterCallback(New<DispatcherCallback>(nullptr, [&] { order += "callback "; }).Get());
  dispatcher = nullptr;
  EXPECT_EQ("callback 21", order);
}

TEST_F(Dispatcher, MessageReachesEitherTheWholeOldListOrTheWholeNewOne) {
  constexpr int MESSAGES = 2'000;
  constexpr int THREADS = 4;
  std::atomic<long> balance{0};
  std::atomic<long> total{0};
  const auto up = New<RecordingDestination>([&](auto, const auto&) { ++balance, ++total; });
  const auto down = New<RecordingDestination>([&](auto, const auto&) { --balance, ++total; });
  const auto both = Destinations({up, down});
  mpDispatcher->SetDestinations(both);

  std::atomic<int> running{THREADS};
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([&] {
      for (int message = 0; message < MESSAGES; ++message) Log("text");
      --running;
    });
  }
  for (bool empty = true; running > 0; empty = !empty) {
    mpDispatcher->SetDestinations(empty ? Destinations() : both);
  }
  threads.clear();
  EXPECT_EQ(0, balance);
  EXPECT_EQ(total, static_cast<long>(up->Records().size() + down->Records().size()));
}

TEST_F(Dispatcher, HeadersOfThreadsAreNotMixedUp) {
  const auto destination = New<RecordingDestination>();
  mpDispatcher->SetDestinations(Destinations({destination}));
  const auto log = [&](const char* session) {
    YLog::SetThreadSpecificLogHeaders({"", session, ""});
    for (unsigned message = 0; message < 500; ++message) Log(session);
  };
  std::vector<std::jthread> threads;
  for (const char* session : {"1", "2", "3", "4"}) threads.emplace_back(log, session);
  threads.clear();
  ASSERT_EQ(2000U, destination->Records().size());
  for (const Record& record : destination->Records()) {
    ASSERT_EQ(record.text, record.sessionID);
    ASSERT_NE(std::string::npos, record.line.find("[SID:" + record.text + "]"));
  }
}

}  // namespace

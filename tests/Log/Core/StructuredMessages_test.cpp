#include <YLog/Dispatcher.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YLog/YLog.h>
#include <YResource/Localizer.h>
#include <YResource/MemoryBundle.h>

#include "support/Languages.h"
#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;
using Support::FRENCH;
using Support::GERMAN;
using Support::NEUTRAL;
using Support::New;
using Support::Record;
using Support::RecordingDestination;
using testing::ElementsAre;
using testing::IsEmpty;
using YBase::Message;
using YBase::SmartPtrI;

constexpr unsigned DOMAIN = 7;

SmartPtrI<RecordingDestination> In(unsigned short language, RecordingDestination::Action action = nullptr) {
  const auto destination = New<RecordingDestination>(std::move(action));
  destination->SetLanguageID(language);
  return destination;
}

Message MakeMessage(unsigned id, const char* neutralText) {
  Message message(neutralText);
  message.SetDomainAndID(DOMAIN, id);
  return message;
}

/// The message "order failed" with the lower message "disk full". The catalogue has both in German, and only
/// the first in French.
class StructuredMessages : public testing::Test {
 protected:
  StructuredMessages() {
    mMessage.AddLowerLevelMessage(MakeMessage(2, "disk full"));
    mBundle->SetText(1, GERMAN, "Auftrag gescheitert");
    mBundle->SetText(2, GERMAN, "Platte voll");
    mBundle->SetText(1, FRENCH, "commande refusee");
    YResource::RegisterBundle(DOMAIN, mBundle);
  }
  ~StructuredMessages() override { YResource::UnregisterBundle(DOMAIN); }

  void Set(std::initializer_list<SmartPtrI<YLog::Destination>> destinations) const {
    mpDispatcher->SetDestinations(Destinations(destinations));
  }
  void Log() const { mpRouter->LogMessage(std::as_const(mMessage)); }
  const char* German() const { return mMessage.GetLocalizedText(GERMAN); }

  const YLog::Initializer mInitializer;
  const SmartPtrI<YResource::MemoryBundle> mBundle = YResource::CreateMemoryBundle(DOMAIN);
  const SmartPtrI<YLog::Router> mpRouter =
      YLog::CreateRouter("Kernel", "Error", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const SmartPtrI<YLog::Dispatcher> mpDispatcher = mpRouter->GetDispatcher();
  Message mMessage = MakeMessage(1, "order failed");
};

TEST_F(StructuredMessages, EachDestinationShowsThemInItsOwnLanguage) {
  const auto neutral = In(NEUTRAL);
  const auto german = In(GERMAN);
  const auto french = In(FRENCH);
  Set({neutral, german, french});
  Log();
  EXPECT_THAT(neutral->Texts(), ElementsAre("order failed\n  disk full"));
  EXPECT_THAT(german->Texts(), ElementsAre("Auftrag gescheitert\n  Platte voll"));
  EXPECT_THAT(french->Texts(), ElementsAre("commande refusee\n  disk full"));
}

TEST_F(StructuredMessages, StampTheHeaderWithTheirIdAndNoSourcePosition) {
  const auto destination = In(NEUTRAL);
  Set({destination});
  mpRouter->LogMessage("a text before", 300, "/src/main.cpp", "Run", 42);
  Log();
  const Record record = destination->Records().at(1);
  EXPECT_EQ(1U, record.messageID);
  EXPECT_EQ("Kernel", record.loggerName);
  EXPECT_EQ("Error", record.dispatcherName);
  EXPECT_EQ("", record.fileName);
  EXPECT_EQ("", record.funcName);
  EXPECT_EQ(0, record.lineNumber);
  EXPECT_EQ(std::string::npos, record.line.find("main.cpp")) << record.line;
}

TEST_F(StructuredMessages, HoldTheLocalizedTextsAfterwards) {
  Set({In(GERMAN), In(FRENCH)});
  mpRouter->LogMessage(mMessage);
  EXPECT_STREQ("Auftrag gescheitert", German());
  EXPECT_STREQ("commande refusee", mMessage.GetLocalizedText(FRENCH));
  EXPECT_STREQ("order failed", mMessage.GetLocalizedText(NEUTRAL));
}

TEST_F(StructuredMessages, HoldTheLocalizedTextsWhicheverObjectLogsThem) {
  Set({In(GERMAN)});
  Message second = mMessage;
  mpRouter->GetLogger()->LogMessage(mpRouter->GetLogger()->Dispatchers().ObtainCookie("Error"), mMessage);
  mpDispatcher->LogMessage(*mpRouter->GetLogger(), second);
  EXPECT_STREQ("Auftrag gescheitert", German());
  EXPECT_STREQ("Auftrag gescheitert", second.GetLocalizedText(GERMAN));
}

TEST_F(StructuredMessages, StayUnchangedIfConst) {
  Set({In(GERMAN)});
  Log();
  EXPECT_EQ(nullptr, German());
}

TEST_F(StructuredMessages, StayUnchangedIfADestinationThrows) {
  const auto last = In(NEUTRAL);
  Set({In(GERMAN, [](auto, const auto&) { throw std::runtime_error("full"); }), last});
  EXPECT_THROW(mpRouter->LogMessage(mMessage), std::runtime_error);
  EXPECT_EQ(nullptr, German());
  EXPECT_THAT(last->Texts(), IsEmpty());
}

TEST_F(StructuredMessages, StayUnchangedWithoutADestination) {
  mpRouter->LogMessage(mMessage);
  Log();
  EXPECT_EQ(nullptr, German());
}

TEST_F(StructuredMessages, AreDroppedForACookieThatTheLoggerDidNotIssue) {
  const auto destination = In(GERMAN);
  Set({destination});
  mpRouter->GetLogger()->LogMessage(0, mMessage);
  mpRouter->GetLogger()->LogMessage(0, std::as_const(mMessage));
  EXPECT_EQ(nullptr, German());
  EXPECT_THAT(destination->Texts(), IsEmpty());
}

TEST_F(StructuredMessages, AreLoggedEvenIfTheRoutersFlagIsNotSet) {
  const auto destination = In(NEUTRAL);
  Set({destination});
  mpRouter->mEnabled = false;
  Log();
  EXPECT_EQ(1U, destination->Texts().size());
}

TEST_F(StructuredMessages, SkipNullDestinations) {
  const auto destination = In(NEUTRAL);
  Set({nullptr, destination});
  Log();
  EXPECT_EQ(1U, destination->Texts().size());
}

TEST_F(StructuredMessages, ShowDomainAndIdIfThereIsNoText) {
  const auto destination = In(GERMAN);
  Set({destination});
  Message message;
  message.SetDomainAndID(DOMAIN, 99);
  mpRouter->LogMessage(message);
  EXPECT_THAT(destination->Texts(), ElementsAre("7/99"));
}

TEST_F(StructuredMessages, MayBeCaughtExceptions) {
  Set({In(GERMAN)});
  try {
    throw YBase::ExceptionImpl<Message>(mMessage);
  } catch (YBase::ExceptionImpl<Message>& exception) {
    mpRouter->LogMessage(exception);
    EXPECT_STREQ("Auftrag gescheitert", exception.GetLocalizedText(GERMAN));
    EXPECT_STREQ("order failed\n  disk full", exception.what());
  }
}

TEST_F(StructuredMessages, LoggedByADestinationLeaveTheOuterOneUnchanged) {
  const auto inner = YLog::CreateDispatcher("Inner");
  const auto innerRecords = In(GERMAN);
  inner->SetDestinations(Destinations({innerRecords}));
  Message innerMessage = MakeMessage(2, "disk full");
  const auto last = In(FRENCH);
  Set({In(GERMAN, [&](auto, const auto&) { inner->LogMessage(*mpRouter->GetLogger(), innerMessage); }),
       last});
  mpRouter->LogMessage(mMessage);
  EXPECT_THAT(innerRecords->Texts(), ElementsAre("Platte voll"));
  EXPECT_THAT(last->Texts(), ElementsAre("commande refusee\n  disk full"));
  EXPECT_STREQ("Platte voll", innerMessage.GetLocalizedText(GERMAN));
  EXPECT_STREQ("Auftrag gescheitert", German());
  EXPECT_EQ(1U, last->Records().at(0).messageID);
}

TEST_F(StructuredMessages, LoggedByADestinationOfATextHaveTheirOwnBody) {
  const auto inner = YLog::CreateDispatcher("Inner");
  const auto innerRecords = In(GERMAN);
  inner->SetDestinations(Destinations({innerRecords}));
  const auto last = In(NEUTRAL);
  Set({In(NEUTRAL, [&](auto, const auto&) { inner->LogMessage(*mpRouter->GetLogger(), mMessage); }), last});
  mpRouter->LogMessage("text", 300, "main.cpp", "Run", 42);
  EXPECT_THAT(innerRecords->Texts(), ElementsAre("Auftrag gescheitert\n  Platte voll"));
  EXPECT_EQ(300U, last->Records().at(0).messageID);
}

TEST_F(StructuredMessages, OfManyThreadsAreNotMixedUp) {
  const auto destination = In(GERMAN);
  Set({destination});
  {
    std::vector<std::jthread> threads;
    for (unsigned id = 100; id < 108; ++id) {
      threads.emplace_back([this, id] {
        for (int count = 0; count < 200; ++count) {
          Message message(std::to_string(id).c_str());
          message.SetDomainAndID(DOMAIN, id);
          mpRouter->LogMessage(message);
        }
      });
    }
  }
  const auto records = destination->Records();
  EXPECT_EQ(1600U, records.size());
  for (const Record& record : records) EXPECT_EQ(std::to_string(record.messageID), record.text);
}

/// A client's destination that reads the body itself.
class BothLanguages final : public YLog::Destination,
                            public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  void LogMessage(const char* text, const YLog::MessageHeader&) const override { mText += text; }
  void LogMessage(const YLog::MessageHeader&, const YLog::MessageBody& body) const override {
    mText += std::string(body.GetText(NEUTRAL)) + " / " + body.GetText(GERMAN);
  }
  void SetCallstackMessageIDs(const unsigned*, unsigned) override {}
  unsigned short GetLanguageID() const override { return NEUTRAL; }
  void SetLanguageID(unsigned short) override {}

  mutable std::string mText;

 private:
  ~BothLanguages() override = default;
};

TEST_F(StructuredMessages, ReachAClientsDestinationWithTheirWholeBody) {
  const auto destination = New<BothLanguages>();
  Set({destination});
  mpRouter->LogMessage(MakeMessage(2, "disk full"));
  EXPECT_EQ("disk full / Platte voll", destination->mText);
}

}  // namespace

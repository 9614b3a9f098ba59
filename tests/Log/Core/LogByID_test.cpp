#include <YLog/Log.h>

#include <stdexcept>
#include <string>
#include <vector>

#include <YLog/YLog.h>
#include <YResource/Language.h>
#include <YResource/MemoryBundle.h>

#include "support/Languages.h"
#include "support/New.h"
#include "support/RecordingBundle.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;
using Support::GERMAN;
using Support::New;
using Support::Record;
using Support::RecordingBundle;
using Support::RecordingDestination;
using testing::ElementsAre;
using testing::IsEmpty;
using YBase::SmartPtrI;
using YLog::GetMessageFormatter;

class LogByID : public testing::Test {
 protected:
  LogByID() {
    YResource::SetProcessLanguageID(GERMAN);
    Enable(mpDestination);
  }
  ~LogByID() override { YResource::SetProcessLanguageID(mLanguage); }

  void Enable(const SmartPtrI<RecordingDestination>& destination) const {
    mpRouter->GetDispatcher()->SetDestinations(Destinations({destination}));
  }
  void SetBundle(const SmartPtrI<RecordingBundle>& bundle) const {
    mpRouter->GetLogger()->SetResourceBundle(bundle.Get());
  }
  /// A catalogue that, once asked, is held only by the operation that asks it.
  SmartPtrI<RecordingBundle> MakeShortLivedBundle() {
    return New<RecordingBundle>(
        "text", [this] { SetBundle(nullptr); }, [this] { mEvents.emplace_back("bundle gone"); });
  }
  SmartPtrI<RecordingDestination> MakeEventDestination() {
    return New<RecordingDestination>([this](auto, const auto&) { mEvents.emplace_back("logged"); });
  }
  Record TheRecord() const { return mpDestination->Records().at(0); }

  const YLog::Initializer mInitializer;
  const unsigned short mLanguage = YResource::GetProcessLanguageID();
  const SmartPtrI<YLog::Router> mpRouter =
      YLog::CreateRouter("Kernel", "Error", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const SmartPtrI<RecordingDestination> mpDestination = New<RecordingDestination>();
  std::vector<std::string> mEvents;
};

TEST_F(LogByID, MessageFillsTheArgumentsIntoTheTemplateOfTheCatalogue) {
  const auto bundle = New<RecordingBundle>("Auftrag %1");
  SetBundle(bundle);
  YLog::LogMessage(*mpRouter, 300, GetMessageFormatter() << 17, "Order %1");
  EXPECT_EQ("Auftrag 17", TheRecord().text);
  EXPECT_EQ(300U, TheRecord().messageID);
  EXPECT_EQ("template 300 1031 Order %1", bundle->GetQuestion());
}

TEST_F(LogByID, StringIsTheUnchangedTextOfTheCatalogue) {
  const auto bundle = New<RecordingBundle>("100 %1 %%");
  SetBundle(bundle);
  YLog::LogString(*mpRouter, 300, "default");
  EXPECT_EQ("100 %1 %%", TheRecord().text);
  EXPECT_EQ(300U, TheRecord().messageID);
  EXPECT_EQ("string 300 1031 default", bundle->GetQuestion());
}

TEST_F(LogByID, FollowsTheLanguageOfTheProcess) {
  const auto bundle = YResource::CreateMemoryBundle(7);
  bundle->SetText(300, 0, "order %1");
  bundle->SetText(300, GERMAN, "Auftrag %1");
  mpRouter->GetLogger()->SetResourceBundle(bundle.Get());
  YLog::LogMessage(*mpRouter, 300, GetMessageFormatter() << 1);
  YResource::SetProcessLanguageID(0);
  YLog::LogMessage(*mpRouter, 300, GetMessageFormatter() << 2);
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("Auftrag 1", "order 2"));
}

TEST_F(LogByID, FallsBackToTheDefaultForAnIdThatTheCatalogueLacks) {
  mpRouter->GetLogger()->SetResourceBundle(YResource::CreateMemoryBundle(7).Get());
  YLog::LogMessage(*mpRouter, 300, GetMessageFormatter() << 17, "Order %1");
  YLog::LogString(*mpRouter, 300, "Order");
  YLog::LogMessage(*mpRouter, 300, GetMessageFormatter() << 17);
  YLog::LogString(*mpRouter, 300);
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("Order 17", "Order", "7/300", "7/300"));
}

TEST_F(LogByID, WithoutACatalogueUsesTheDefaultOrElseTheId) {
  YLog::LogMessage(*mpRouter, 300, GetMessageFormatter() << 17, "Order %1");
  YLog::LogString(*mpRouter, 300, "Order");
  YLog::LogMessage(*mpRouter, 300, GetMessageFormatter() << 17);
  YLog::LogString(*mpRouter, 300, "");
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("Order 17", "Order", "0/300", "0/300"));
}

TEST_F(LogByID, RecordsTheSourcePositionOfTheCall) {
  const int line = __LINE__ + 1;
  YLog::LogMessage(*mpRouter, 300, GetMessageFormatter(), "text");
  YLog::LogString(*mpRouter, 300, "text");
  for (const Record& record : mpDestination->Records()) {
    EXPECT_EQ(__FILE__, record.fileName);
    EXPECT_EQ("TestBody", record.funcName);
  }
  EXPECT_EQ(line, mpDestination->Records().at(0).lineNumber);
  EXPECT_EQ(line + 1, mpDestination->Records().at(1).lineNumber);
}

TEST_F(LogByID, RecordsAnExplicitSourcePosition) {
  YLog::LogMessage(*mpRouter, 300, GetMessageFormatter(), "text", "/src/main.cpp", "Run", 42);
  YLog::LogString(*mpRouter, 300, "text", "/src/main.cpp", "Run", 42);
  for (const Record& record : mpDestination->Records()) {
    EXPECT_TRUE(record.line.ends_with("[main.cpp:Run at line:42]")) << record.line;
  }
}

TEST_F(LogByID, DisabledRouterLeavesTheArgumentsAndTheCatalogueAlone) {
  const auto bundle = New<RecordingBundle>("%1");
  SetBundle(bundle);
  mpRouter->mEnabled = false;
  YResource::MessageFormatter formatter = GetMessageFormatter();
  formatter << "kept";
  YLog::LogMessage(*mpRouter, 300, formatter);
  YLog::LogString(*mpRouter, 300);
  EXPECT_EQ("", bundle->GetQuestion());
  EXPECT_THAT(mpDestination->Texts(), IsEmpty());
  mpRouter->mEnabled = true;
  YLog::LogMessage(*mpRouter, 300, formatter);
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("kept"));
}

TEST_F(LogByID, NamedFormatterIsConsumed) {
  SetBundle(New<RecordingBundle>("%1"));
  YResource::MessageFormatter formatter = GetMessageFormatter();
  formatter << "first";
  YLog::LogMessage(*mpRouter, 300, formatter);
  YLog::LogMessage(*mpRouter, 300, formatter);
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("first", "%1"));
}

TEST_F(LogByID, CatalogueIsHeldUntilTheMessageIsLogged) {
  Enable(MakeEventDestination());
  SetBundle(MakeShortLivedBundle());
  YLog::LogMessage(*mpRouter, 300, GetMessageFormatter());
  EXPECT_THAT(mEvents, ElementsAre("logged", "bundle gone"));
  mEvents.clear();
  SetBundle(MakeShortLivedBundle());
  YLog::LogString(*mpRouter, 300);
  EXPECT_THAT(mEvents, ElementsAre("logged", "bundle gone"));
}

TEST_F(LogByID, CatalogueIsReleasedBeforeAMessageThatIsThenThrown) {
  Enable(MakeEventDestination());
  SetBundle(MakeShortLivedBundle());
  EXPECT_THROW(YLog::LogMessageAndThrowBaseException(*mpRouter, 300, GetMessageFormatter()), YBase::Message);
  EXPECT_THAT(mEvents, ElementsAre("bundle gone", "logged"));
}

TEST_F(LogByID, PropagatesExceptionsOfTheCatalogue) {
  SetBundle(New<RecordingBundle>("text", [] { throw std::runtime_error("catalogue"); }));
  EXPECT_THROW(YLog::LogMessage(*mpRouter, 300, GetMessageFormatter()), std::runtime_error);
  EXPECT_THROW(YLog::LogString(*mpRouter, 300), std::runtime_error);
  EXPECT_THAT(mpDestination->Texts(), IsEmpty());
}

TEST_F(LogByID, CatalogueIsReleasedWhenTheMessageFails) {
  Enable(New<RecordingDestination>([](auto, const auto&) { throw std::runtime_error("full"); }));
  SetBundle(MakeShortLivedBundle());
  EXPECT_THROW(YLog::LogMessage(*mpRouter, 300, GetMessageFormatter()), std::runtime_error);
  EXPECT_THAT(mEvents, ElementsAre("bundle gone"));
}

}  // namespace

#include <YLog/Log.h>

#include <stdexcept>
#include <string>

#include <YLog/YLog.h>

#include "support/New.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;
using Support::New;
using Support::Record;
using Support::RecordingDestination;
using testing::ElementsAre;
using testing::IsEmpty;
using YBase::SmartPtrI;

class Log : public testing::Test {
 protected:
  void Enable() const { mpRouter->GetDispatcher()->SetDestinations(Destinations({mpDestination})); }
  Record TheRecord() const { return mpDestination->Records().at(0); }

  const YLog::Initializer mInitializer;
  const SmartPtrI<YLog::Router> mpRouter =
      YLog::CreateRouter("Kernel", "Error", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const SmartPtrI<RecordingDestination> mpDestination = New<RecordingDestination>();
};

TEST_F(Log, MessageFillsTheArgumentsIntoTheTemplate) {
  Enable();
  YLog::LogMessage(*mpRouter, "Order %1 took %2 ms, %1", YLog::GetMessageFormatter() << 17 << 2.5);
  EXPECT_EQ("Order 17 took 2.5 ms, 17", TheRecord().text);
  EXPECT_EQ(0U, TheRecord().messageID);
}

TEST_F(Log, MessageConsumesTheArgumentsOfANamedFormatter) {
  Enable();
  YResource::MessageFormatter formatter = YLog::GetMessageFormatter();
  formatter << "first";
  YLog::LogMessage(*mpRouter, "%1", formatter);
  YLog::LogMessage(*mpRouter, "%1", formatter);
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("first", "%1"));
}

TEST_F(Log, NothingHappensWhileTheRouterIsDisabled) {
  YResource::MessageFormatter formatter = YLog::GetMessageFormatter();
  formatter << "kept";
  YLog::LogMessage(*mpRouter, "%1", formatter);
  YLog::LogString(*mpRouter, "text");
  EXPECT_THAT(mpDestination->Texts(), IsEmpty());
  Enable();
  YLog::LogMessage(*mpRouter, "%1", formatter);
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("kept"));
}

TEST_F(Log, ChecksOnlyTheRoutersFlag) {
  Enable();
  mpRouter->mEnabled = false;
  YLog::LogMessage(*mpRouter, "text", YLog::GetMessageFormatter());
  YLog::LogString(*mpRouter, "text");
  EXPECT_THAT(mpDestination->Texts(), IsEmpty());
}

TEST_F(Log, StringIsLoggedUnchangedAndNeverTheDefaultText) {
  Enable();
  YLog::LogString(*mpRouter, "100 %1 %%", "default");
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("100 %1 %%"));
  EXPECT_EQ(0U, TheRecord().messageID);
}

TEST_F(Log, MessageNeverUsesTheDefaultTemplate) {
  Enable();
  YLog::LogMessage(*mpRouter, "", YLog::GetMessageFormatter() << 1, "default %1");
  EXPECT_THAT(mpDestination->Texts(), ElementsAre(""));
}

TEST_F(Log, RecordsTheSourcePositionOfTheCall) {
  Enable();
  const int line = __LINE__ + 1;
  YLog::LogString(*mpRouter, "text");
  YLog::LogMessage(*mpRouter, "text", YLog::GetMessageFormatter());
  for (const Record& record : mpDestination->Records()) {
    EXPECT_EQ(__FILE__, record.fileName);
    EXPECT_EQ("TestBody", record.funcName);
  }
  EXPECT_EQ(line, mpDestination->Records().at(0).lineNumber);
  EXPECT_EQ(line + 1, mpDestination->Records().at(1).lineNumber);
}

TEST_F(Log, RecordsAnExplicitSourcePosition) {
  Enable();
  YLog::LogString(*mpRouter, "text", nullptr, "/src/main.cpp", "Run", 42);
  EXPECT_TRUE(TheRecord().line.ends_with("[main.cpp:Run at line:42]")) << TheRecord().line;
}

TEST_F(Log, LogsTextsLongerThanTheFormattersOwnStorage) {
  Enable();
  const std::string text(10'000, 'x');
  YLog::LogMessage(*mpRouter, "%1", YLog::GetMessageFormatter() << text);
  YLog::LogString(*mpRouter, text.c_str());
  EXPECT_THAT(mpDestination->Texts(), ElementsAre(text, text));
}

TEST_F(Log, RefusesNullForATemplateAndAText) {
  Enable();
  EXPECT_DEBUG_DEATH(YLog::LogMessage(*mpRouter, nullptr, YLog::GetMessageFormatter()), "text != nullptr");
  EXPECT_DEBUG_DEATH(YLog::LogString(*mpRouter, nullptr), "text != nullptr");
}

TEST_F(Log, ArgumentThatItselfLogsDoesNotDisturbTheMessage) {
  Enable();
  const auto getCount = [&] {
    YLog::LogMessage(*mpRouter, "counting %1", YLog::GetMessageFormatter() << "orders");
    return 3;
  };
  YLog::LogMessage(*mpRouter, "%1 %2", YLog::GetMessageFormatter() << "orders:" << getCount());
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("counting orders", "orders: 3"));
}

TEST_F(Log, PropagatesExceptionsOfADestination) {
  mpRouter->GetDispatcher()->SetDestinations(
      Destinations({New<RecordingDestination>([](auto, const auto&) { throw std::runtime_error("full"); })}));
  EXPECT_THROW(YLog::LogString(*mpRouter, "text"), std::runtime_error);
}

}  // namespace

#include <YLog/Log.h>

#include <functional>
#include <stdexcept>
#include <string>

#include <YLog/YLog.h>

#include "support/New.h"
#include "support/RecordingBundle.h"
#include "support/RecordingDestination.h"

namespace {

using Support::Destinations;
using Support::New;
using Support::Record;
using Support::RecordingBundle;
using Support::RecordingDestination;
using testing::ElementsAre;
using testing::IsEmpty;
using YBase::SmartPtrI;
using YLog::GetMessageFormatter;
using YLog::LogMessageAndThrowBaseException;
using YLog::LogStringAndThrowBaseException;
using BaseException = YBase::ExceptionImpl<YBase::Message>;

class LogAndThrow : public testing::Test {
 protected:
  void Enable(RecordingDestination::Action action = nullptr) {
    mpDestination = New<RecordingDestination>(std::move(action));
    mpRouter->GetDispatcher()->SetDestinations(Destinations({mpDestination}));
  }
  void SetBundle(const SmartPtrI<RecordingBundle>& bundle) const {
    mpRouter->GetLogger()->SetResourceBundle(bundle.Get());
  }
  /// The exception that the function throws; a failure of the test if it returns.
  static BaseException ThrownBy(const std::function<void()>& function) {
    try {
      function();
    } catch (const BaseException& exception) {
      return exception;
    }
    ADD_FAILURE() << "nothing was thrown";
    return BaseException("nothing was thrown");
  }

  const YLog::Initializer mInitializer;
  const SmartPtrI<YLog::Router> mpRouter =
      YLog::CreateRouter("Kernel", "Error", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  SmartPtrI<RecordingDestination> mpDestination;
};

TEST_F(LogAndThrow, StringIsLoggedUnchangedAndThrown) {
  Enable();
  const auto thrown = ThrownBy([&] { LogStringAndThrowBaseException(*mpRouter, "100 %1"); });
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("100 %1"));
  EXPECT_STREQ("100 %1", thrown.what());
  EXPECT_STREQ("100 %1", thrown.GetLocalizedText(0));
  EXPECT_EQ(YBase::MESSAGE_DOMAIN_UNKNOWN, thrown.GetDomain());
  EXPECT_EQ(0U, thrown.GetID());
}

TEST_F(LogAndThrow, MessageIsFormattedLoggedAndThrownWithoutAnId) {
  Enable();
  YResource::MessageFormatter formatter = GetMessageFormatter();
  formatter << 17;
  const auto thrown =
      ThrownBy([&] { LogMessageAndThrowBaseException(*mpRouter, "Order %1", formatter, "default %1"); });
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("Order 17"));
  EXPECT_STREQ("Order 17", thrown.what());
  EXPECT_EQ(0U, thrown.GetID());
}

TEST_F(LogAndThrow, MessageByIdIsThrownWithItsId) {
  Enable();
  const auto bundle = New<RecordingBundle>("Auftrag %1");
  SetBundle(bundle);
  const auto thrown = ThrownBy(
      [&] { LogMessageAndThrowBaseException(*mpRouter, 1234, GetMessageFormatter() << 17, "Order %1"); });
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("Auftrag 17"));
  EXPECT_EQ(1234U, mpDestination->Records().at(0).messageID);
  EXPECT_STREQ("Auftrag 17", thrown.what());
  EXPECT_EQ(YBase::MESSAGE_DOMAIN_UNKNOWN, thrown.GetDomain());
  EXPECT_EQ(1234U, thrown.GetID());
}

TEST_F(LogAndThrow, StringByIdIsThrownWithItsId) {
  Enable();
  const auto bundle = New<RecordingBundle>("Auftrag %1");
  SetBundle(bundle);
  const auto thrown = ThrownBy([&] { LogStringAndThrowBaseException(*mpRouter, 1234, "Order"); });
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("Auftrag %1"));
  EXPECT_EQ(1234U, mpDestination->Records().at(0).messageID);
  EXPECT_EQ(0U, bundle->GetQuestion().find("string 1234 "));
  EXPECT_STREQ("Auftrag %1", thrown.what());
  EXPECT_EQ(1234U, thrown.GetID());
}

TEST_F(LogAndThrow, RecordsHaveNoSourcePosition) {
  Enable();
  ThrownBy([&] { LogStringAndThrowBaseException(*mpRouter, "text"); });
  ThrownBy([&] { LogStringAndThrowBaseException(*mpRouter, 1, "text"); });
  ThrownBy([&] { LogMessageAndThrowBaseException(*mpRouter, "text", GetMessageFormatter()); });
  ThrownBy([&] { LogMessageAndThrowBaseException(*mpRouter, 1, GetMessageFormatter(), "text"); });
  EXPECT_EQ(4U, mpDestination->Records().size());
  for (const Record& record : mpDestination->Records()) {
    EXPECT_EQ("", record.fileName);
    EXPECT_EQ("", record.funcName);
    EXPECT_EQ(0, record.lineNumber);
  }
}

TEST_F(LogAndThrow, ThrowTheDefaultWithoutACatalogue) {
  Enable();
  EXPECT_STREQ("Order", ThrownBy([&] { LogStringAndThrowBaseException(*mpRouter, 1, "Order"); }).what());
  EXPECT_STREQ("0/1", ThrownBy([&] { LogStringAndThrowBaseException(*mpRouter, 1); }).what());
}

TEST_F(LogAndThrow, ThrowEvenWithoutADestination) {
  EXPECT_STREQ("text", ThrownBy([&] { LogStringAndThrowBaseException(*mpRouter, "text"); }).what());
  EXPECT_STREQ("text 1", ThrownBy([&] {
                           LogMessageAndThrowBaseException(*mpRouter, "text %1", GetMessageFormatter() << 1);
                         }).what());
}

TEST_F(LogAndThrow, LogRegardlessOfTheRoutersFlag) {
  Enable();
  mpRouter->mEnabled = false;
  ThrownBy([&] { LogStringAndThrowBaseException(*mpRouter, "text"); });
  ThrownBy([&] { LogMessageAndThrowBaseException(*mpRouter, 1, GetMessageFormatter(), "text"); });
  EXPECT_THAT(mpDestination->Texts(), ElementsAre("text", "text"));
}

TEST_F(LogAndThrow, ExceptionOfADestinationReplacesIt) {
  Enable([](auto, const auto&) { throw std::runtime_error("full"); });
  EXPECT_THROW(LogStringAndThrowBaseException(*mpRouter, "text"), std::runtime_error);
  EXPECT_THROW(LogMessageAndThrowBaseException(*mpRouter, 1, GetMessageFormatter()), std::runtime_error);
}

TEST_F(LogAndThrow, ExceptionOfTheCatalogueReplacesItAndNothingIsLogged) {
  Enable();
  SetBundle(New<RecordingBundle>("text", [] { throw std::runtime_error("catalogue"); }));
  EXPECT_THROW(LogStringAndThrowBaseException(*mpRouter, 1), std::runtime_error);
  EXPECT_THROW(LogMessageAndThrowBaseException(*mpRouter, 1, GetMessageFormatter()), std::runtime_error);
  EXPECT_THAT(mpDestination->Texts(), IsEmpty());
}

TEST_F(LogAndThrow, CanBeCaughtAsAStandardException) {
  EXPECT_THROW(LogStringAndThrowBaseException(*mpRouter, "text"), std::exception);
  EXPECT_THROW(LogStringAndThrowBaseException(*mpRouter, "text"), YBase::Message);
}

TEST_F(LogAndThrow, RefuseNullForAText) {
  EXPECT_DEBUG_DEATH(
      ThrownBy([&] { LogStringAndThrowBaseException(*mpRouter, static_cast<const char*>(nullptr)); }),
      "text != nullptr");
}

}  // namespace

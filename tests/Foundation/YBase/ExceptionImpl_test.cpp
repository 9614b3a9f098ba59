#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>

#include <exception>
#include <string>

namespace {

using Exception = YBase::ExceptionImpl<YBase::Message>;

TEST(ExceptionImpl, CanBeCaughtAsAMessage) {
  try {
    throw Exception("disk full");
  } catch (const YBase::Message& message) {
    EXPECT_STREQ(message.GetLocalizedText(0), "disk full");
    EXPECT_EQ(message.GetMessage(), L"disk full");
  }
}

TEST(ExceptionImpl, CanBeCaughtAsAStandardException) {
  try {
    throw Exception(
        "fa\xC3\xA7"
        "ade");
  } catch (const std::exception& exception) {
    EXPECT_STREQ(exception.what(),
                 "fa\xC3\xA7"
                 "ade");
  }
}

TEST(ExceptionImpl, CarriesDomainAndIdWithTheText) {
  Exception exception("text");
  exception.SetDomainAndID(YBase::MESSAGE_DOMAIN_UNKNOWN, 1234);
  try {
    throw exception;
  } catch (const YBase::Message& message) {
    EXPECT_EQ(message.GetDomain(), YBase::MESSAGE_DOMAIN_UNKNOWN);
    EXPECT_EQ(message.GetID(), 1234u);
  }
}

TEST(ExceptionImpl, KeepsTheTextOfItsConstruction) {
  Exception exception("first");
  exception.SetLocalizedText(0, "second");
  EXPECT_STREQ(exception.what(), "first");
  EXPECT_EQ(exception.GetMessage(), L"second");
}

TEST(ExceptionImpl, ShowsTheWholeTreeOfAMessage) {
  YBase::Message message("outer");
  message.AddLowerLevelMessage(YBase::Message("inner"));
  const Exception exception(message);
  EXPECT_STREQ(exception.what(), "outer\n  inner");
  EXPECT_STREQ(Exception(exception).what(), "outer\n  inner");
}

TEST(ExceptionImpl, ReplacesInvalidUtf8) {
  EXPECT_STREQ(Exception("a\xFF"
                         "b")
                   .what(),
               "a\xEF\xBF\xBD"
               "b");
}

}  // namespace

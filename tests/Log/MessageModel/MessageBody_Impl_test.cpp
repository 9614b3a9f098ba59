#include <YBase/Message.h>

#include <map>

#include "MessageModel/MessageBody_Impl.h"

namespace {

using YBase::Message;
using YLog::MessageBody_Impl;

constexpr unsigned short GERMAN = 0x0007;
constexpr unsigned short FRENCH = 0x000C;

Message MakeLocalized(unsigned short language, const char* text) {
  Message message;
  message.SetLocalizedText(language, text);
  return message;
}

TEST(MessageBodyImpl, MergesOnlyTheTextsInTheLanguageOfEachMessage) {
  std::map<unsigned short, Message> localized{{GERMAN, MakeLocalized(GERMAN, "eins")},
                                              {FRENCH, MakeLocalized(FRENCH, "un")}};
  localized[GERMAN].SetLocalizedText(FRENCH, "stray");
  Message message("one");
  MessageBody_Impl::MergeTexts(localized, message);
  EXPECT_STREQ(message.GetLocalizedText(GERMAN), "eins");
  EXPECT_STREQ(message.GetLocalizedText(FRENCH), "un");
  EXPECT_STREQ(message.GetLocalizedText(0), "one");
}

TEST(MessageBodyImpl, MergesASmallerTree) {
  std::map<unsigned short, Message> localized{{GERMAN, MakeLocalized(GERMAN, "oben")}};
  Message middle("middle");
  middle.AddLowerLevelMessage(Message("leaf"));
  Message message("top");
  message.AddLowerLevelMessage(middle);
  message.AddLowerLevelMessage(Message("after"));
  MessageBody_Impl::MergeTexts(localized, message);
  EXPECT_EQ(message.GetMessage(), L"top\n  middle\n    leaf\n  after");
  EXPECT_STREQ(message.GetLocalizedText(GERMAN), "oben");
}

TEST(MessageBodyImpl, MergesNoMessageThatItsTreeLacks) {
  std::map<unsigned short, Message> localized{{GERMAN, MakeLocalized(GERMAN, "oben")}};
  localized[GERMAN].AddLowerLevelMessage(MakeLocalized(GERMAN, "zuviel"));
  Message message("top");
  MessageBody_Impl::MergeTexts(localized, message);
  EXPECT_EQ(message.GetMessage(), L"top");
  EXPECT_STREQ(message.GetLocalizedText(GERMAN), "oben");
}

TEST(MessageBodyImpl, MatchesMessagesWhenOneTreeIsDeeperThanTheOther) {
  Message lower = MakeLocalized(GERMAN, "erstes");
  lower.AddLowerLevelMessage(MakeLocalized(GERMAN, "darunter"));
  std::map<unsigned short, Message> localized{{GERMAN, Message()}};
  localized[GERMAN].AddLowerLevelMessage(lower);
  localized[GERMAN].AddLowerLevelMessage(MakeLocalized(GERMAN, "zweites"));
  Message message;
  message.AddLowerLevelMessage(Message());
  message.AddLowerLevelMessage(Message());
  MessageBody_Impl::MergeTexts(localized, message);
  EXPECT_EQ(message.GetMessage(), L"  erstes\n  zweites");
}

}  // namespace

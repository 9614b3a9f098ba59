#include <YBase/Message.h>

#include <map>

#include "MessageModel/MessageBody_Impl.h"

namespace {

using YBase::Message;
using MessageMerger = YLog::MessageBody_Impl::MessageMerger;

constexpr unsigned short GERMAN = 0x0007;
constexpr unsigned short FRENCH = 0x000C;

Message MakeLocalized(unsigned short language, const char* text) {
  Message message;
  message.SetLocalizedText(language, text);
  return message;
}

TEST(MessageMerger, CopiesOnlyTheTextsOfEachMessagesLanguage) {
  std::map<unsigned short, Message> localized{{GERMAN, MakeLocalized(GERMAN, "eins")},
                                              {FRENCH, MakeLocalized(FRENCH, "un")}};
  localized[GERMAN].SetLocalizedText(FRENCH, "stray");
  Message message("one");
  MessageMerger(localized, message);
  EXPECT_STREQ(message.GetLocalizedText(GERMAN), "eins");
  EXPECT_STREQ(message.GetLocalizedText(FRENCH), "un");
  EXPECT_STREQ(message.GetLocalizedText(0), "one");
}

TEST(MessageMerger, ReadsNothingOutsideASmallerTree) {
  std::map<unsigned short, Message> localized{{GERMAN, MakeLocalized(GERMAN, "oben")}};
  Message middle("middle");
  middle.AddLowerLevelMessage(Message("leaf"));
  Message message("top");
  message.AddLowerLevelMessage(middle);
  message.AddLowerLevelMessage(Message("after"));
  MessageMerger(localized, message);
  EXPECT_EQ(message.GetMessage(), L"top\n  middle\n    leaf\n  after");
  EXPECT_STREQ(message.GetLocalizedText(GERMAN), "oben");
}

TEST(MessageMerger, TakesNothingFromBeyondItsTree) {
  std::map<unsigned short, Message> localized{{GERMAN, MakeLocalized(GERMAN, "oben")}};
  localized[GERMAN].AddLowerLevelMessage(MakeLocalized(GERMAN, "zuviel"));
  Message message("top");
  MessageMerger(localized, message);
  EXPECT_EQ(message.GetMessage(), L"top");
  EXPECT_STREQ(message.GetLocalizedText(GERMAN), "oben");
}

TEST(MessageMerger, KeepsItsPlaceWhereOneTreeIsDeeperThanTheOther) {
  Message lower = MakeLocalized(GERMAN, "erstes");
  lower.AddLowerLevelMessage(MakeLocalized(GERMAN, "darunter"));
  std::map<unsigned short, Message> localized{{GERMAN, Message()}};
  localized[GERMAN].AddLowerLevelMessage(lower);
  localized[GERMAN].AddLowerLevelMessage(MakeLocalized(GERMAN, "zweites"));
  Message message;
  message.AddLowerLevelMessage(Message());
  message.AddLowerLevelMessage(Message());
  MessageMerger(localized, message);
  EXPECT_EQ(message.GetMessage(), L"  erstes\n  zweites");
}

TEST(MessageMerger, OnlyItsWayUpCanFail) {
  Message message("top");
  MessageMerger merger({}, message);
  EXPECT_TRUE(merger.GoToLowerLevelMessage());
  EXPECT_TRUE(merger.GoToSameLevelMessage());
  EXPECT_FALSE(merger.GoToParent());
}

TEST(MessageMerger, StandsAtTheRootWhenItIsDone) {
  Message message("top");
  message.AddLowerLevelMessage(Message("lower"));
  MessageMerger merger({}, message);
  EXPECT_FALSE(merger.LowerLevelMessageIsUnvisited());
  EXPECT_FALSE(merger.GoToParent());
}

}  // namespace

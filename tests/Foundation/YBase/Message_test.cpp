#include <YBase/Message.h>

#include <string>
#include <type_traits>
#include <utility>

namespace {

using YBase::Message;

static_assert(std::is_nothrow_move_constructible_v<Message>);
static_assert(!std::is_convertible_v<const char*, Message>);

Message MakeChain(unsigned levels) {
  Message chain("leaf");
  for (unsigned level = 0; level < levels; ++level) {
    Message above("node");
    above.AddLowerLevelMessage(std::move(chain));
    chain = std::move(above);
  }
  return chain;
}

TEST(Message, IsEmptyByDefault) {
  const Message message;
  EXPECT_EQ(message.GetDomain(), YBase::MESSAGE_DOMAIN_UNKNOWN);
  EXPECT_EQ(message.GetID(), 0u);
  EXPECT_EQ(message.GetLocalizedText(0), nullptr);
  EXPECT_EQ(message.GetMessage(), L"");
}

TEST(Message, UsesItsTextAsTheNeutralOne) {
  const Message message("text");
  EXPECT_STREQ(message.GetLocalizedText(0), "text");
  EXPECT_EQ(message.GetLocalizedText(0x0407), nullptr);
  EXPECT_EQ(message.GetMessage(), L"text");
}

TEST(Message, TreatsNullAsAnEmptyText) {
  Message message(nullptr);
  EXPECT_STREQ(message.GetLocalizedText(0), "");
  message.SetLocalizedText(0x0407, nullptr);
  EXPECT_STREQ(message.GetLocalizedText(0x0407), "");
}

TEST(Message, KeepsATextForEachLanguage) {
  Message message("colour");
  message.SetLocalizedText(0x0407, "Farbe");
  message.SetLocalizedText(0xFFFF, "last");
  message.SetLocalizedText(0x0407, "Farben");
  EXPECT_STREQ(message.GetLocalizedText(0), "colour");
  EXPECT_STREQ(message.GetLocalizedText(0x0407), "Farben");
  EXPECT_STREQ(message.GetLocalizedText(0xFFFF), "last");
  EXPECT_EQ(message.GetMessage(), L"colour");
}

TEST(Message, IndentsNestedMessagesByTwoBlanksPerLevel) {
  Message middle("middle");
  middle.AddLowerLevelMessage(Message("first leaf"));
  middle.AddLowerLevelMessage(Message("second leaf"));
  Message top("top");
  top.AddLowerLevelMessage(std::move(middle));
  top.AddLowerLevelMessage(Message("after"));
  EXPECT_EQ(top.GetMessage(), L"top\n  middle\n    first leaf\n    second leaf\n  after");
}

TEST(Message, ShowsTheTextOfItsLowestLanguageWithoutANeutralOne) {
  Message message;
  message.SetLocalizedText(0x0409, "English");
  message.SetLocalizedText(0x0407, "Deutsch");
  message.SetDomainAndID(1, 2);
  EXPECT_EQ(message.GetMessage(), L"Deutsch");
}

TEST(Message, ShowsDomainAndIdWithoutAnyText) {
  Message message;
  message.SetDomainAndID(12, 4294967295);
  EXPECT_EQ(message.GetMessage(), L"12/4294967295");
  message.SetDomainAndID(YBase::MESSAGE_DOMAIN_UNKNOWN, 345);
  EXPECT_EQ(message.GetMessage(), L"0/345");
}

TEST(Message, PrintsNoLineForAMessageWithNothingToShow) {
  Message top;
  top.AddLowerLevelMessage(Message());
  top.AddLowerLevelMessage(Message("cause"));
  EXPECT_EQ(top.GetMessage(), L"  cause");
}

TEST(Message, SharesNothingWithItsCopy) {
  Message original("original");
  original.SetDomainAndID(1, 2);
  original.AddLowerLevelMessage(Message("beneath"));
  const Message copy(original);
  original.SetLocalizedText(0, "changed");
  original.AddLowerLevelMessage(Message("more"));
  EXPECT_EQ(copy.GetMessage(), L"original\n  beneath");
  EXPECT_EQ(copy.GetDomain(), 1u);
  EXPECT_EQ(copy.GetID(), 2u);
}

TEST(Message, KeepsTheOrderWhenAWideTreeIsCopied) {
  Message original("top");
  for (const char* name : {"a", "b", "c"}) {
    Message child(name);
    child.AddLowerLevelMessage(Message((std::string(name) + "1").c_str()));
    child.AddLowerLevelMessage(Message((std::string(name) + "2").c_str()));
    original.AddLowerLevelMessage(std::move(child));
  }
  const Message copy(original);
  EXPECT_EQ(copy.GetMessage(), L"top\n  a\n    a1\n    a2\n  b\n    b1\n    b2\n  c\n    c1\n    c2");
}

TEST(Message, AssignmentReplacesTheWholeTree) {
  Message source("source");
  source.AddLowerLevelMessage(Message("beneath"));
  Message target("target");
  target.SetLocalizedText(0x0407, "Ziel");
  target.AddLowerLevelMessage(Message("old"));
  target = source;
  EXPECT_EQ(target.GetMessage(), L"source\n  beneath");
  EXPECT_EQ(target.GetLocalizedText(0x0407), nullptr);
  const Message& itself = target;
  target = itself;
  EXPECT_EQ(target.GetMessage(), L"source\n  beneath");
}

TEST(Message, CanBeAddedBeneathItself) {
  Message message("twice");
  message.AddLowerLevelMessage(message);
  EXPECT_EQ(message.GetMessage(), L"twice\n  twice");
}

TEST(Message, HandlesATreeTooDeepForRecursion) {
  constexpr unsigned LEVELS = 100'000;
  const Message chain = MakeChain(LEVELS);
  Message copy(chain);
  const Message moved(std::move(copy));
  // The indentation grows for 32 levels and stays the same below.
  const std::size_t indentation = 2 * (32 * 33 / 2 + (LEVELS - 32) * 32);
  EXPECT_EQ(moved.GetMessage().size(), (LEVELS + 1) * 4 + LEVELS + indentation);
}

}  // namespace

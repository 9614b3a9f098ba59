#include <YBase/AdvanceMessageCursor.h>
#include <YBase/ConstMessageCursor.h>
#include <YBase/FormatMessage.h>

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>

#include "CountedObject.h"

namespace {

using YBase::FormatMessage;
using YBase::Message;

constexpr unsigned short GERMAN = 0x0007;
constexpr unsigned short AUSTRIAN = 0x0C07;

/// Contains the texts that a test sets. Austrian falls back to German.
class Catalogue final : public YBase::Localizer, public CountedObject {
 public:
  YBase::ReturnString GetText(unsigned domain, unsigned id, unsigned short language) const override {
    if (id == mBrokenID) throw std::runtime_error("broken");
    const auto text = mTexts.find({domain, id, language});
    return text != mTexts.end() ? text->second : "";
  }
  unsigned short GetParentLanguage(unsigned short language) const noexcept override {
    return language == AUSTRIAN ? GERMAN : mParentOfOthers;
  }
  void Set(unsigned domain, unsigned id, unsigned short language, const char* text) {
    mTexts[{domain, id, language}] = text;
  }

  std::optional<unsigned> mBrokenID;
  unsigned short mParentOfOthers = 0;

 private:
  std::map<std::tuple<unsigned, unsigned, unsigned short>, std::string> mTexts;
};

Message MakeMessage(unsigned domain, unsigned id, const char* neutralText = nullptr) {
  Message message;
  message.SetDomainAndID(domain, id);
  if (neutralText != nullptr) message.SetLocalizedText(0, neutralText);
  return message;
}

std::string Format(const Message& message, const Catalogue& catalogue, unsigned short language) {
  Message localized;
  return FormatMessage(message, localized, language, catalogue);
}

TEST(FormatMessage, UsesTheTextOfTheRequestedLanguage) {
  Message message("order");
  message.SetLocalizedText(GERMAN, "Auftrag");
  EXPECT_EQ(FormatMessage(message, GERMAN), "Auftrag");
  EXPECT_EQ(FormatMessage(message, 0), "order");
}

TEST(FormatMessage, IndentsNestedMessagesByTheirDepth) {
  Message middle("middle");
  middle.AddLowerLevelMessage(Message("leaf"));
  Message top("top");
  top.AddLowerLevelMessage(std::move(middle));
  top.AddLowerLevelMessage(Message("after"));
  EXPECT_EQ(FormatMessage(top, GERMAN), "top\n  middle\n    leaf\n  after");
  EXPECT_EQ(Format(top, Catalogue(), GERMAN), "top\n  middle\n    leaf\n  after");
}

TEST(FormatMessage, IndentsEachLineOfAMultilineText) {
  Message message("one\ntwo");
  message.AddLowerLevelMessage(Message("three\r\n\nfour\n"));
  message.AddLowerLevelMessage(Message("\nfive"));
  message.AddLowerLevelMessage(Message("\n"));
  EXPECT_EQ("one\ntwo\n  three\r\n\n  four\n\n\n  five\n\n", FormatMessage(message, 0));
}

TEST(FormatMessage, FallsBackToTheNeutralTextAndThenToDomainAndId) {
  Message top = MakeMessage(12, 345, "neutral");
  Message lower = MakeMessage(12, 4294967295);
  lower.SetLocalizedText(GERMAN, "nur deutsch");
  top.AddLowerLevelMessage(lower);
  EXPECT_EQ(FormatMessage(top, 0x0409), "neutral\n  12/4294967295");
  EXPECT_EQ(Format(top, Catalogue(), 0x0409), "neutral\n  12/4294967295");
}

TEST(FormatMessage, ShowsATextInAnotherLanguageIfThereIsNoId) {
  Message message;
  message.SetLocalizedText(GERMAN, "nur deutsch");
  EXPECT_EQ(FormatMessage(message, 0x0409), "nur deutsch");
}

TEST(FormatMessage, ShowsSomethingEvenForAnEmptyMessage) {
  EXPECT_EQ(FormatMessage(Message(), GERMAN), "0/0");
  EXPECT_EQ(Format(Message(), Catalogue(), GERMAN), "0/0");
}

TEST(FormatMessage, PrintsNoLineForAMessageThatOnlyHoldsOthers) {
  Message top;
  top.AddLowerLevelMessage(Message("first"));
  top.AddLowerLevelMessage(Message("second"));
  EXPECT_EQ(FormatMessage(top, 0), "  first\n  second");
}

TEST(FormatMessage, PrintsNoLineForAnEmptyText) {
  Message top("top");
  top.AddLowerLevelMessage(Message(""));
  EXPECT_EQ(FormatMessage(top, 0), "top");
  EXPECT_EQ(FormatMessage(Message(""), 0), "") << "set, not missing";
}

TEST(FormatMessage, AsksTheLocalizerBeforeItFallsBack) {
  Catalogue catalogue;
  catalogue.Set(7, 1, GERMAN, "Auftrag");
  Message localized;
  EXPECT_EQ(FormatMessage(MakeMessage(7, 1, "order"), localized, GERMAN, catalogue), "Auftrag");
  EXPECT_STREQ(localized.GetLocalizedText(GERMAN), "Auftrag");
  EXPECT_EQ(localized.GetLocalizedText(0), nullptr);
}

TEST(FormatMessage, TriesTheLocalizersParentLanguagesInTurn) {
  Catalogue catalogue;
  catalogue.Set(7, 1, GERMAN, "Januar");
  Message localized;
  EXPECT_EQ(FormatMessage(MakeMessage(7, 1, "January"), localized, AUSTRIAN, catalogue), "Januar");
  EXPECT_STREQ(localized.GetLocalizedText(AUSTRIAN), "Januar")
      << "stored as the text of the requested language";
  EXPECT_EQ(localized.GetLocalizedText(GERMAN), nullptr);
  catalogue.Set(7, 1, AUSTRIAN, "J\xC3\xA4nner");
  EXPECT_EQ(Format(MakeMessage(7, 1, "January"), catalogue, AUSTRIAN), "J\xC3\xA4nner");
}

TEST(FormatMessage, PrefersItsOwnTextToTheLocalizers) {
  Catalogue catalogue;
  catalogue.Set(7, 1, GERMAN, "Katalog");
  catalogue.Set(7, 1, 0, "catalogue");
  Message message = MakeMessage(7, 1, "own");
  message.SetLocalizedText(GERMAN, "eigen");
  Message localized;
  EXPECT_EQ(FormatMessage(message, localized, AUSTRIAN, catalogue), "eigen");
  EXPECT_EQ(FormatMessage(message, localized, 0x040C, catalogue), "own");
  EXPECT_EQ(localized.GetTextOfLowestLanguage(), nullptr) << "the localizer gave nothing";
}

TEST(FormatMessage, UsesTheLocalizersNeutralTextIfItHasNone) {
  Catalogue catalogue;
  catalogue.Set(7, 1, 0, "catalogue");
  EXPECT_EQ(Format(MakeMessage(7, 1), catalogue, GERMAN), "catalogue");
  EXPECT_EQ(Format(MakeMessage(7, 2), catalogue, GERMAN), "7/2");
}

TEST(FormatMessage, TerminatesIfTheParentLanguagesFormACycle) {
  Catalogue catalogue;
  catalogue.mParentOfOthers = AUSTRIAN;
  EXPECT_EQ(Format(MakeMessage(7, 1, "order"), catalogue, GERMAN), "order");
}

TEST(FormatMessage, StoresTheLocalizersTextsInTheLocalizedMessage) {
  Catalogue catalogue;
  catalogue.Set(7, 3, GERMAN, "drei");
  Message top("top");
  top.AddLowerLevelMessage(MakeMessage(7, 2, "two"));
  top.AddLowerLevelMessage(MakeMessage(7, 3, "three"));
  Message localized;
  EXPECT_EQ(FormatMessage(top, localized, GERMAN, catalogue), "top\n  two\n  drei");
  YBase::ConstMessageCursor cursor(localized);
  ASSERT_TRUE(YBase::AdvanceMessageCursor(cursor));
  EXPECT_EQ(cursor.GetCurrentMessage().GetLocalizedText(GERMAN), nullptr);
  ASSERT_TRUE(YBase::AdvanceMessageCursor(cursor));
  EXPECT_STREQ(cursor.GetCurrentMessage().GetLocalizedText(GERMAN), "drei");
  EXPECT_FALSE(YBase::AdvanceMessageCursor(cursor));
}

TEST(FormatMessage, KeepsTheExtraNodesOfALargerLocalizedMessage) {
  Catalogue catalogue;
  catalogue.Set(7, 1, GERMAN, "eins");
  Message localized;
  localized.AddLowerLevelMessage(Message("more"));
  EXPECT_EQ(FormatMessage(MakeMessage(7, 1), localized, GERMAN, catalogue), "eins");
  EXPECT_EQ(localized.GetMessage(), L"eins\n  more");
}

TEST(FormatMessage, PropagatesExceptionsOfTheLocalizer) {
  Catalogue catalogue;
  catalogue.mBrokenID = 2;
  Message top = MakeMessage(7, 1, "top");
  top.AddLowerLevelMessage(MakeMessage(7, 2, "broken"));
  EXPECT_THROW(Format(top, catalogue, GERMAN), std::runtime_error);
}

TEST(FormatMessage, FormatsATreeTooDeepForRecursion) {
  constexpr unsigned LEVELS = 100'000;
  Catalogue catalogue;
  catalogue.Set(7, 1, GERMAN, "tief");
  Message chain = MakeMessage(7, 1);
  for (unsigned level = 0; level < LEVELS; ++level) {
    Message above("node");
    above.AddLowerLevelMessage(std::move(chain));
    chain = std::move(above);
  }
  Message localized;
  const std::string text = FormatMessage(chain, localized, GERMAN, catalogue);
  std::string deepest(64, ' ');
  deepest += "tief";
  EXPECT_EQ(text.substr(text.rfind('\n') + 1), deepest);
  EXPECT_NE(localized.GetMessage().find(L"tief"), std::wstring::npos);
}

}  // namespace

#include <YBase/AdvanceMessageCursor.h>
#include <YBase/ConstMessageCursor.h>
#include <YLog/MessageBody.h>
#include <YResource/Localizer.h>
#include <YResource/MemoryBundle.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using YBase::Message;
using YLog::CreateMessageBody;

constexpr unsigned short GERMAN = 0x0007;
constexpr unsigned short FRENCH = 0x000C;
constexpr unsigned DOMAIN = 7;

static_assert(std::has_virtual_destructor_v<YLog::MessageBody>);
static_assert(!std::is_destructible_v<YLog::MessageBody>);

Message MakeMessage(unsigned id, const char* neutralText) {
  Message message(neutralText);
  message.SetDomainAndID(DOMAIN, id);
  return message;
}

/// The message "one" with the lower messages "two" and "three".
Message MakeTree() {
  Message tree = MakeMessage(1, "one");
  tree.AddLowerLevelMessage(MakeMessage(2, "two"));
  tree.AddLowerLevelMessage(MakeMessage(3, "three"));
  return tree;
}

/// The text of each message of the tree in one language, "-" if there is none.
std::vector<std::string> TextsOf(const Message& tree, unsigned short language) {
  std::vector<std::string> texts;
  YBase::ConstMessageCursor cursor(tree);
  do {
    const char* text = cursor.GetCurrentMessage().GetLocalizedText(language);
    texts.emplace_back(text != nullptr ? text : "-");
  } while (YBase::AdvanceMessageCursor(cursor));
  return texts;
}

/// The catalogue has "eins" and "drei" in German, and "deux" in French.
class MessageBody : public testing::Test {
 protected:
  MessageBody() {
    mBundle->SetText(1, GERMAN, "eins");
    mBundle->SetText(3, GERMAN, "drei");
    mBundle->SetText(2, FRENCH, "deux");
    YResource::RegisterBundle(DOMAIN, mBundle);
  }
  ~MessageBody() override { YResource::UnregisterBundle(DOMAIN); }

  const YBase::SmartPtrI<YResource::MemoryBundle> mBundle = YResource::CreateMemoryBundle(DOMAIN);
  const YBase::SmartPtrI<YLog::MessageBody> mBody = CreateMessageBody();
};

TEST_F(MessageBody, RendersTheTextOfTheMessageItself) {
  Message message("order");
  message.SetLocalizedText(GERMAN, "Auftrag");
  mBody->SetMessage(message);
  EXPECT_STREQ(mBody->GetText(GERMAN), "Auftrag");
  EXPECT_STREQ(mBody->GetText(0), "order");
}

TEST_F(MessageBody, RendersTextsThatTheMessageLacksFromTheCatalogues) {
  mBody->SetMessage(MakeTree());
  EXPECT_STREQ(mBody->GetText(GERMAN), "eins\n  two\n  drei");
  EXPECT_STREQ(mBody->GetText(FRENCH), "one\n  deux\n  three");
  EXPECT_STREQ(mBody->GetText(0), "one\n  two\n  three");
}

TEST_F(MessageBody, DoesNotAskTheCataloguesForATreeWhoseTopHasTheLanguage) {
  Message tree = MakeTree();
  tree.SetLocalizedText(GERMAN, "oben");
  mBody->SetMessage(tree);
  EXPECT_STREQ(mBody->GetText(GERMAN), "oben\n  two\n  three");
}

TEST_F(MessageBody, FormatsOncePerLanguage) {
  mBody->SetMessage(MakeTree());
  const char* const first = mBody->GetText(GERMAN);
  mBundle->SetText(1, GERMAN, "anders");
  mBody->GetText(FRENCH);
  EXPECT_EQ(mBody->GetText(GERMAN), first);
  EXPECT_STREQ(first, "eins\n  two\n  drei");
}

TEST_F(MessageBody, FormatsAgainForTheNextMessage) {
  mBody->SetMessage(MakeTree());
  EXPECT_STREQ(mBody->GetText(GERMAN), "eins\n  two\n  drei");
  mBody->SetMessage(MakeMessage(3, "three"));
  EXPECT_STREQ(mBody->GetText(GERMAN), "drei");
}

TEST_F(MessageBody, ReturnsTheMessageUnchangedBeforeAnyTextIsRequested) {
  mBody->SetMessage(MakeTree());
  const Message& message = mBody->GetMessage();
  EXPECT_THAT(TextsOf(message, 0), ElementsAre("one", "two", "three"));
  EXPECT_THAT(TextsOf(message, GERMAN), ElementsAre("-", "-", "-"));
  EXPECT_EQ(message.GetDomain(), DOMAIN);
}

TEST_F(MessageBody, ReturnsTheMessageWithEveryTextThatTheLocalizerProduced) {
  mBody->SetMessage(MakeTree());
  mBody->GetText(GERMAN);
  mBody->GetText(FRENCH);
  const Message& message = mBody->GetMessage();
  EXPECT_THAT(TextsOf(message, GERMAN), ElementsAre("eins", "-", "drei"));
  EXPECT_THAT(TextsOf(message, FRENCH), ElementsAre("-", "deux", "-"));
  EXPECT_THAT(TextsOf(message, 0), ElementsAre("one", "two", "three"));
}

TEST_F(MessageBody, SecondMergeChangesNothing) {
  mBody->SetMessage(MakeTree());
  mBody->GetText(GERMAN);
  mBody->GetMessage();
  mBundle->SetText(2, GERMAN, "zwei");
  EXPECT_THAT(TextsOf(mBody->GetMessage(), GERMAN), ElementsAre("eins", "-", "drei"));
  EXPECT_STREQ(mBody->GetText(GERMAN), "eins\n  two\n  drei") << "the texts are kept";
}

TEST_F(MessageBody, MergesNoTextOfAnEarlierMessage) {
  mBody->SetMessage(MakeTree());
  mBody->GetText(GERMAN);
  mBody->SetMessage(MakeMessage(2, "two"));
  EXPECT_THAT(TextsOf(mBody->GetMessage(), GERMAN), ElementsAre("-"));
}

TEST_F(MessageBody, KeepsTheTextsOfALanguageThatTheTopLacksWhenItsMessageIsRequested) {
  mBody->SetMessage(MakeTree());
  const char* const text = mBody->GetText(FRENCH);
  mBody->GetMessage();
  mBundle->SetText(1, FRENCH, "un");
  EXPECT_EQ(mBody->GetText(FRENCH), text);
  EXPECT_STREQ(text, "one\n  deux\n  three");
}

TEST_F(MessageBody, AcceptsItsOwnMessageAsTheNextOne) {
  mBody->SetMessage(MakeTree());
  mBody->GetText(GERMAN);
  mBody->SetMessage(mBody->GetMessage());
  EXPECT_STREQ(mBody->GetText(GERMAN), "eins\n  two\n  drei");
}

TEST_F(MessageBody, MergesTreesTooDeepForRecursion) {
  constexpr int LEVELS = 30'000;
  Message chain = MakeMessage(1, "one");
  for (int level = 0; level < LEVELS; ++level) {
    Message above = MakeMessage(2, "two");
    above.AddLowerLevelMessage(std::move(chain));
    chain = std::move(above);
  }
  mBody->SetMessage(chain);
  mBody->GetText(GERMAN);
  EXPECT_EQ(TextsOf(mBody->GetMessage(), GERMAN).back(), "eins");
}

TEST_F(MessageBody, ShowsDomainAndIdOfAnEmptyMessage) {
  EXPECT_STREQ(mBody->GetText(GERMAN), "0/0");
  EXPECT_EQ(mBody->GetMessage().GetMessage(), L"");
}

TEST_F(MessageBody, ShowsDomainAndIdIfThereIsNoText) {
  Message message;
  message.SetDomainAndID(DOMAIN, 99);
  mBody->SetMessage(message);
  EXPECT_STREQ(mBody->GetText(GERMAN), "7/99");
}

/// Throws at the first request.
class StumblingBundle final : public YResource::Bundle,
                              public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
  YResource::MessageTemplate GetMessageTemplate(unsigned, unsigned short, const char* text) const override {
    return YResource::GetMessageTemplate(text);
  }
  YBase::ReturnString GetString(unsigned, unsigned short, const char*) const override {
    if (!std::exchange(mbHasFailed, true)) throw std::runtime_error("stumbled");
    return "found";
  }

  mutable bool mbHasFailed = false;
};

TEST_F(MessageBody, RetriesAfterAFailure) {
  YResource::RegisterBundle(DOMAIN, YBase::SmartPtrI<YResource::Bundle>(new StumblingBundle));
  mBody->SetMessage(MakeMessage(1, "one"));
  EXPECT_THROW(mBody->GetText(GERMAN), std::runtime_error);
  EXPECT_STREQ(mBody->GetText(GERMAN), "found");
}

}  // namespace

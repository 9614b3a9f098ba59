#include <YBase/FormatMessage.h>
#include <YBase/Message.h>
#include <YResource/Localizer.h>
#include <YResource/MemoryBundle.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "support/ChildProcess.h"

namespace {

using YBase::SmartPtrI;
using YResource::Bundle;
using YResource::CreateMemoryBundle;
using YResource::GetLocalizer;
using YResource::RegisterBundle;
using YResource::UnregisterBundle;

constexpr unsigned short GERMAN = 0x0007;
constexpr unsigned short AUSTRIAN = 0x0C07;

/// A client's catalogue that has one text for every ID, and counts its instances.
class ClientBundle final : public Bundle, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit ClientBundle(std::atomic<int>& living) : mLiving(living) { ++mLiving; }

  YResource::MessageTemplate GetMessageTemplate(unsigned id, unsigned short language,
                                                const char* defaultTemplate) const override {
    return YResource::MessageTemplate(GetString(id, language, defaultTemplate));
  }
  YBase::ReturnString GetString(unsigned, unsigned short language, const char* defaultText) const override {
    return language == GERMAN ? "vom Kunden" : defaultText;
  }

 private:
  ~ClientBundle() override { --mLiving; }

  std::atomic<int>& mLiving;
};

std::string Render(unsigned domain, unsigned id, unsigned short language, const char* neutralText = nullptr) {
  YBase::Message message;
  message.SetDomainAndID(domain, id);
  if (neutralText != nullptr) message.SetLocalizedText(0, neutralText);
  YBase::Message localized;
  return YBase::FormatMessage(message, localized, language, *GetLocalizer());
}

TEST(Localizer, IsTheSameForTheWholeProcess) {
  EXPECT_EQ(GetLocalizer(), GetLocalizer());
}

TEST(Localizer, HasNoTextsInitially) {
  EXPECT_EQ(GetLocalizer()->GetText(7, 1, GERMAN), "");
  EXPECT_EQ(GetLocalizer()->GetText(YBase::MESSAGE_DOMAIN_UNKNOWN, 1, GERMAN), "");
}

TEST(Localizer, FindsTextsByDomainIdAndExactLanguage) {
  const auto bundle = CreateMemoryBundle(7);
  bundle->SetText(1, GERMAN, "Auftrag");
  RegisterBundle(7, bundle);
  EXPECT_EQ(GetLocalizer()->GetText(7, 1, GERMAN), "Auftrag");
  EXPECT_EQ(GetLocalizer()->GetText(7, 1, AUSTRIAN), "");
  EXPECT_EQ(GetLocalizer()->GetText(7, 2, GERMAN), "");
  EXPECT_EQ(GetLocalizer()->GetText(8, 1, GERMAN), "");
}

TEST(Localizer, FallsBackThroughTheParentsToDomainAndId) {
  const auto bundle = CreateMemoryBundle(7);
  bundle->SetText(1, AUSTRIAN, "J\xC3\xA4nner");
  bundle->SetText(2, GERMAN, "Auftrag");
  bundle->SetText(3, 0, "item");
  RegisterBundle(7, bundle);
  EXPECT_EQ(Render(7, 1, AUSTRIAN, "January"), "J\xC3\xA4nner");
  EXPECT_EQ(Render(7, 2, AUSTRIAN, "order"), "Auftrag");
  EXPECT_EQ(Render(7, 3, AUSTRIAN, "its own"), "its own");
  EXPECT_EQ(Render(7, 3, AUSTRIAN), "item");
  EXPECT_EQ(Render(7, 4, AUSTRIAN), "7/4");
}

TEST(Localizer, KeepsTheBundlesOfManyDomainsApart) {
  for (const unsigned domain : {5u, 1u, 0xFFFFFFFFu, 3u}) {
    const auto bundle = CreateMemoryBundle(domain);
    bundle->SetText(1, 0, std::to_string(domain).c_str());
    RegisterBundle(domain, bundle);
  }
  UnregisterBundle(3);
  EXPECT_EQ(GetLocalizer()->GetText(1, 1, 0), "1");
  EXPECT_EQ(GetLocalizer()->GetText(3, 1, 0), "");
  EXPECT_EQ(GetLocalizer()->GetText(5, 1, 0), "5");
  EXPECT_EQ(GetLocalizer()->GetText(0xFFFFFFFF, 1, 0), "4294967295");
}

TEST(Localizer, AsksTheBundlesOfClients) {
  std::atomic<int> living{0};
  RegisterBundle(7, SmartPtrI<Bundle>(new ClientBundle(living)));
  EXPECT_EQ(Render(7, 1, GERMAN, "order"), "vom Kunden");
  EXPECT_EQ(Render(7, 1, 0x040C, "order"), "order") << "an empty default is not a text";
}

TEST(Localizer, ReleasesABundleThatIsReplacedOrUnregistered) {
  std::atomic<int> living{0};
  RegisterBundle(7, SmartPtrI<Bundle>(new ClientBundle(living)));
  RegisterBundle(7, SmartPtrI<Bundle>(new ClientBundle(living)));
  EXPECT_EQ(living, 1);
  UnregisterBundle(7);
  EXPECT_EQ(living, 0);
  UnregisterBundle(7);
  EXPECT_EQ(GetLocalizer()->GetText(7, 1, GERMAN), "");
}

/// Registers another bundle during its destruction.
class RestlessBundle final : public Bundle, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
  YResource::MessageTemplate GetMessageTemplate(unsigned, unsigned short, const char* text) const override {
    return YResource::GetMessageTemplate(text);
  }
  YBase::ReturnString GetString(unsigned, unsigned short, const char* text) const override { return text; }
  void ReferenceCountIsAboutToReachZero() const override {
    const auto heir = CreateMemoryBundle(7);
    heir->SetText(1, 0, "heir");
    RegisterBundle(7, heir);
  }
};

TEST(Localizer, LetsABundleRegisterAnotherDuringItsDestruction) {
  RegisterBundle(7, SmartPtrI<Bundle>(new RestlessBundle));
  UnregisterBundle(7);
  EXPECT_EQ(GetLocalizer()->GetText(7, 1, 0), "heir");
}

TEST(Localizer, RefusesWhatCannotBeRegistered) {
  EXPECT_DEBUG_DEATH(RegisterBundle(YBase::MESSAGE_DOMAIN_UNKNOWN, CreateMemoryBundle()), "domain");
  EXPECT_DEBUG_DEATH(RegisterBundle(7, SmartPtrI<Bundle>()), "bundle");
}

TEST(Localizer, CanBeReadWhileBundlesAreRegisteredAndUnregistered) {
  std::atomic<int> living{0};
  std::atomic<bool> isOver{false};
  std::atomic<int> wrong{0};
  std::vector<std::thread> readers;
  for (int i = 0; i < 3; ++i) {
    readers.emplace_back([&] {
      while (!isOver) {
        const std::string text = GetLocalizer()->GetText(7, 1, GERMAN);
        if (text != "vom Kunden" && text != "") ++wrong;
      }
    });
  }
  for (int i = 0; i < 500; ++i) {
    RegisterBundle(7, SmartPtrI<Bundle>(new ClientBundle(living)));
    RegisterBundle(static_cast<unsigned>(8 + i % 5), SmartPtrI<Bundle>(new ClientBundle(living)));
    if (i % 3 == 0) UnregisterBundle(7);
  }
  isOver = true;
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(living, 6) << "the domains 7 to 12";
  for (unsigned domain = 7; domain <= 12; ++domain) UnregisterBundle(domain);
  EXPECT_EQ(living, 0);
}

TEST(Localizer, CanBeChangedInAChildForkedWhileOtherThreadsRead) {
  std::atomic<int> living{0};
  std::atomic<bool> isOver{false};
  RegisterBundle(7, SmartPtrI<Bundle>(new ClientBundle(living)));
  std::vector<std::thread> readers;
  for (int i = 0; i < 2; ++i) {
    readers.emplace_back([&] {
      while (!isOver) GetLocalizer()->GetText(7, 1, GERMAN);
    });
  }
  for (int i = 0; i < 20; ++i) {
    Support::ChildProcess child([&] {
      UnregisterBundle(7);
      return GetLocalizer()->GetText(7, 1, GERMAN).empty() ? 0 : 1;
    });
    EXPECT_EQ(child.Wait(), 0);
  }
  isOver = true;
  for (std::thread& reader : readers) reader.join();
  UnregisterBundle(7);
}

}  // namespace

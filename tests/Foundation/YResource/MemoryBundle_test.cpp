#include <YResource/Language.h>
#include <YResource/MemoryBundle.h>

#include <atomic>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

using YResource::CreateMemoryBundle;
using YResource::MemoryBundle;

constexpr unsigned short GERMAN = 0x0007;
constexpr unsigned short AUSTRIAN = 0x0C07;

static_assert(!std::is_destructible_v<MemoryBundle>);

TEST(MemoryBundle, ReturnsTheTextOfTheLanguage) {
  const auto bundle = CreateMemoryBundle(12);
  bundle->SetText(1, 0, "order %1");
  bundle->SetText(1, GERMAN, "Auftrag %1");
  EXPECT_EQ(bundle->GetDomain(), 12u);
  EXPECT_EQ(bundle->GetString(1, GERMAN, "default"), "Auftrag %1");
  EXPECT_EQ(bundle->GetMessageTemplate(1, GERMAN, "default").GetText(), "Auftrag %1");
}

TEST(MemoryBundle, FallsBackToTheParentAndThenToTheNeutralText) {
  const auto bundle = CreateMemoryBundle();
  bundle->SetText(1, 0, "January");
  bundle->SetText(1, GERMAN, "Januar");
  bundle->SetText(2, 0, "order");
  EXPECT_EQ(bundle->GetString(1, AUSTRIAN, "default"), "Januar");
  EXPECT_EQ(bundle->GetString(2, AUSTRIAN, "default"), "order");
  EXPECT_EQ(bundle->GetString(1, 0xFFFF, "default"), "January") << "an unknown language";
  bundle->SetText(1, AUSTRIAN, "J\xC3\xA4nner");
  EXPECT_EQ(bundle->GetString(1, AUSTRIAN, "default"), "J\xC3\xA4nner");
  EXPECT_EQ(bundle->GetString(1, GERMAN, "default"), "Januar");
}

TEST(MemoryBundle, ReturnsTheDefaultForAMissingText) {
  const auto bundle = CreateMemoryBundle();
  bundle->SetText(1, GERMAN, "nur deutsch");
  EXPECT_EQ(bundle->GetString(1, 0, "default"), "default");
  EXPECT_EQ(bundle->GetMessageTemplate(7, GERMAN, "default %1").GetText(), "default %1");
}

TEST(MemoryBundle, ReturnsDomainAndIdRatherThanNothing) {
  const auto bundle = CreateMemoryBundle(12);
  EXPECT_EQ(bundle->GetString(345, 0, nullptr), "12/345");
  EXPECT_EQ(bundle->GetString(345, 0, ""), "12/345");
  EXPECT_EQ(bundle->GetMessageTemplate(345, GERMAN, nullptr).GetText(), "12/345");
}

TEST(MemoryBundle, ReturnsTheNewTextAfterAReplacement) {
  const auto bundle = CreateMemoryBundle();
  bundle->SetText(1, GERMAN, "old");
  bundle->SetText(1, GERMAN, "new");
  EXPECT_EQ(bundle->GetString(1, GERMAN, "default"), "new");
}

TEST(MemoryBundle, RemovesATextThatIsSetToNothing) {
  const auto bundle = CreateMemoryBundle();
  bundle->SetText(1, 0, "neutral");
  bundle->SetText(1, GERMAN, "deutsch");
  bundle->SetText(1, GERMAN, nullptr);
  EXPECT_EQ(bundle->GetString(1, GERMAN, "default"), "neutral");
  bundle->SetText(1, 0, "");
  EXPECT_EQ(bundle->GetString(1, GERMAN, "default"), "default");
}

TEST(MemoryBundle, CanBeFilledBySeveralThreadsWhileOthersReadIt) {
  constexpr unsigned TEXTS = 300;
  const auto bundle = CreateMemoryBundle();
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (unsigned short writer = 1; writer <= 2; ++writer) {
    threads.emplace_back([&bundle, writer] {
      for (unsigned id = 1; id <= TEXTS; ++id) bundle->SetText(id, writer, "text");
    });
    threads.emplace_back([&bundle, &wrong, writer] {
      for (unsigned id = 1; id <= TEXTS; ++id) {
        const std::string text = bundle->GetString(id, writer, "default");
        if (text != "text" && text != "default") ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  for (unsigned id = 1; id <= TEXTS; ++id) ASSERT_EQ(bundle->GetString(id, 2, "default"), "text");
}

}  // namespace

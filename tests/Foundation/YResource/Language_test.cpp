#include <YResource/Language.h>

#include <cstdlib>
#include <string>

#include "Foundation/YResource/src/LanguageParents.h"
#include "Foundation/YResource/src/LocaleName.h"

namespace {

using YResource::FindLanguageOfItsOwn;
using YResource::GetLanguageID;
using YResource::GetLocaleName;
using YResource::GetProcessLanguageID;
using YResource::LanguageParents;

constexpr unsigned short GERMAN = 0x0007;
constexpr unsigned short AUSTRIAN = 0x0C07;

/// Each test runs in a process of its own, with its own environment and with nothing read from it yet.
void SetLocale(const char* all, const char* messages, const char* lang) {
  ::setenv("LC_ALL", all, 1);
  ::setenv("LC_MESSAGES", messages, 1);
  ::setenv("LANG", lang, 1);
}

TEST(Language, IsFoundUnderEverySpellingOfItsLocale) {
  EXPECT_EQ(GetLanguageID("de-DE"), 0x0407);
  for (const char* name :
       {"de-AT", "de_AT", "de-at", "DE_at", "de_AT.UTF-8", "de_AT@euro", "de_AT.UTF-8@euro"}) {
    EXPECT_EQ(GetLanguageID(name), AUSTRIAN) << name;
  }
}

TEST(Language, IsNeutralForTheLocalesOfTheCLibrary) {
  for (const char* name : {"C", "POSIX", "C.UTF-8", "", ".UTF-8"}) EXPECT_EQ(GetLanguageID(name), 0) << name;
  EXPECT_EQ(GetLanguageID(nullptr), 0);
}

TEST(Language, IsNeutralForAnythingThatIsNotALocale) {
  for (const char* name : {"deutsch", "d", "../etc", "\xFF\xFE", "de/AT", "%1"})
    EXPECT_EQ(GetLanguageID(name), 0);
  EXPECT_EQ(GetLanguageID(std::string(100000, 'x').c_str()), 0);
}

TEST(Language, IsThatOfTheParentIfTheLocaleHasNone) {
  EXPECT_EQ(GetLanguageID("en-DE"), 0x0009);
  EXPECT_EQ(FindLanguageOfItsOwn("en-DE"), std::nullopt);
  EXPECT_EQ(FindLanguageOfItsOwn("de-AT"), AUSTRIAN);
  EXPECT_EQ(FindLanguageOfItsOwn("zh-TW"), FindLanguageOfItsOwn("zh-Hant-TW"));
}

TEST(Language, IsFoundUnderItsOwnName) {
  EXPECT_EQ(GetLocaleName(AUSTRIAN), "de-AT");
  EXPECT_EQ(GetLocaleName(GERMAN), "de");
  EXPECT_EQ(GetLocaleName(0), "");
  EXPECT_EQ(GetLocaleName(0xFFFF), "");
  int known = 0;
  for (unsigned language = 1; language <= 0xFFFF; ++language) {
    const std::string name = GetLocaleName(static_cast<unsigned short>(language));
    // Spanish with traditional sorting has the same name as Spanish with modern sorting.
    if (name.empty() || language == 0x040A) continue;
    ++known;
    ASSERT_EQ(GetLanguageID(name.c_str()), language) << name;
  }
  EXPECT_GT(known, 300);
}

TEST(Language, FallsBackToMoreGeneralOnes) {
  const LanguageParents& parents = LanguageParents::Get();
  EXPECT_EQ(parents.GetParent(AUSTRIAN), GERMAN);
  EXPECT_EQ(parents.GetParent(GERMAN), 0);
  EXPECT_EQ(parents.GetParent(0), 0);
  EXPECT_EQ(parents.GetParent(0xFFFF), 0);
  EXPECT_EQ(parents.GetParent(GetLanguageID("sr-Latn-RS")), GetLanguageID("sr-Latn"));
  EXPECT_EQ(parents.GetParent(GetLanguageID("sr-Latn")), GetLanguageID("sr"))
      << "not Croatian, of the same family";
}

TEST(Language, HasAFiniteChainOfParents) {
  const LanguageParents& parents = LanguageParents::Get();
  for (unsigned language = 0; language <= 0xFFFF; ++language) {
    unsigned short current = static_cast<unsigned short>(language);
    int steps = 0;
    for (; current != 0 && steps < 5; ++steps) current = parents.GetParent(current);
    ASSERT_EQ(current, 0) << language;
  }
}

TEST(ProcessLanguage, IsThatOfTheEnvironment) {
  SetLocale("", "", "de_AT.UTF-8");
  EXPECT_EQ(GetProcessLanguageID(), AUSTRIAN);
}

TEST(ProcessLanguage, UsesTheFirstVariableThatIsNotEmpty) {
  SetLocale("", "de_AT", "en_US");
  EXPECT_EQ(GetProcessLanguageID(), AUSTRIAN);
}

TEST(ProcessLanguage, PrefersTheVariableForAllCategories) {
  SetLocale("fr_FR", "de_AT", "en_US");
  EXPECT_EQ(GetProcessLanguageID(), 0x040C);
}

TEST(ProcessLanguage, IsNeutralWithoutALocale) {
  ::unsetenv("LC_ALL");
  ::unsetenv("LC_MESSAGES");
  ::unsetenv("LANG");
  EXPECT_EQ(GetProcessLanguageID(), 0);
}

TEST(ProcessLanguage, IsNeutralForAVariableThatNamesNoLocale) {
  SetLocale("nonsense\x01", "", "de_AT");
  EXPECT_EQ(GetProcessLanguageID(), 0);
}

TEST(ProcessLanguage, IsReadOnce) {
  SetLocale("", "", "de_AT");
  EXPECT_EQ(GetProcessLanguageID(), AUSTRIAN);
  SetLocale("", "", "en_US");
  EXPECT_EQ(GetProcessLanguageID(), AUSTRIAN);
}

TEST(ProcessLanguage, IsTheOneThatTheHostSets) {
  SetLocale("", "", "de_AT");
  YResource::SetProcessLanguageID(0x040C);
  EXPECT_EQ(GetProcessLanguageID(), 0x040C);
  YResource::SetProcessLanguageID(0);
  EXPECT_EQ(GetProcessLanguageID(), 0);
}

}  // namespace

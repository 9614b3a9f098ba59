#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YResource/FolderBundle.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "support/CancelledThread.h"
#include "support/TemporaryDirectory.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using YResource::OpenBundle;

constexpr unsigned short GERMAN = 0x0007;
constexpr unsigned short AUSTRIAN = 0x0C07;

std::string MakeCatalogue(const std::string& locale, const std::string& texts) {
  return "{\n\"domain\": 12,\n\"locale\": \"" + locale + "\",\n\"texts\": {\n" + texts + "}\n}\n";
}

/// How many bytes this process has read from files so far.
unsigned long CountBytesRead() {
  std::ifstream file("/proc/self/io");
  std::string name;
  unsigned long count = 0;
  file >> name >> count;
  EXPECT_EQ(name, "rchar:");
  return count;
}

class FolderBundle : public testing::Test {
 protected:
  void Write(const std::string& name, const std::string& content) {
    std::ofstream(mFolder.Path() / name, std::ios::binary) << content;
  }
  void WriteCatalogue(const std::string& locale, const std::string& texts) {
    Write("orders." + locale + ".json", MakeCatalogue(locale, texts));
  }
  void WriteNeutral(const std::string& texts) { Write("orders.json", MakeCatalogue("neutral", texts)); }

  auto Open() { return OpenBundle(mFolder.Path().wstring().c_str()); }

  /// The faults, without the folder before the names.
  std::vector<std::string> Check() {
    auto faults = YResource::CheckCatalogues(mFolder.Path().wstring().c_str());
    for (std::string& fault : faults) {
      const std::string prefix = mFolder.Path().string() + '/';
      for (std::size_t at = 0; (at = fault.find(prefix)) != std::string::npos;)
        fault.erase(at, prefix.size());
    }
    return faults;
  }
  std::vector<std::string> CheckContent(const std::string& content) {
    Write("orders.json", content);
    return Check();
  }

  Support::TemporaryDirectory mFolder;
};

TEST_F(FolderBundle, IsReadInACancelledThread) {
  WriteNeutral(R"("1": "order %1")");
  YBase::SmartPtrI<YResource::FolderBundle> bundle;
  EXPECT_TRUE(Support::FinishesBeforeItIsCancelled([&] { bundle = Open(); }));
  EXPECT_EQ(bundle->GetString(1, 0, ""), "order %1");
}

TEST_F(FolderBundle, ReturnsTheTextsOfItsFiles) {
  WriteNeutral(R"("1": "order %1", "0x0000012C": "full")");
  WriteCatalogue("de", R"("1": "Auftrag %1")");
  const auto bundle = Open();
  EXPECT_EQ(bundle->GetDomain(), 12u);
  EXPECT_EQ(bundle->GetString(1, GERMAN, "default"), "Auftrag %1");
  EXPECT_EQ(bundle->GetMessageTemplate(1, 0, "default").GetText(), "order %1");
  EXPECT_EQ(bundle->GetString(300, 0, "default"), "full") << "an ID in hexadecimal";
}

TEST_F(FolderBundle, FallsBackIfALanguageIsHalfTranslated) {
  WriteNeutral(R"("1": "January", "2": "order", "3": "item")");
  WriteCatalogue("de", R"("1": "Januar", "2": "Auftrag", "3": "")");
  WriteCatalogue("de-AT", R"("1": "J\u00E4nner")");
  const auto bundle = Open();
  EXPECT_EQ(bundle->GetString(1, AUSTRIAN, "default"), "J\xC3\xA4nner");
  EXPECT_EQ(bundle->GetString(2, AUSTRIAN, "default"), "Auftrag");
  EXPECT_EQ(bundle->GetString(3, AUSTRIAN, "default"), "item") << "an empty text counts as not translated";
  EXPECT_EQ(bundle->GetString(4, AUSTRIAN, "default"), "default");
  EXPECT_EQ(bundle->GetString(4, AUSTRIAN, nullptr), "12/4");
}

TEST_F(FolderBundle, FallsBackIfALanguageOrTheNeutralFileIsMissing) {
  WriteCatalogue("de", R"("1": "Auftrag")");
  const auto bundle = Open();
  EXPECT_EQ(bundle->GetString(1, AUSTRIAN, "default"), "Auftrag");
  EXPECT_EQ(bundle->GetString(1, 0x040C, "default"), "default");
}

TEST_F(FolderBundle, ReadsSeveralCompleteLanguages) {
  std::string neutral, german, french;
  for (int id = 1; id <= 200; ++id) {
    const std::string begin = (id > 1 ? ",\n\"" : "\"") + std::to_string(id) + "\": \"";
    neutral += begin + "text %1\"";
    german += begin + "Text %1\"";
    french += begin + "texte %1\"";
  }
  WriteNeutral(neutral);
  WriteCatalogue("de", german);
  WriteCatalogue("fr", french);
  const auto bundle = Open();
  for (unsigned id = 1; id <= 200; ++id) {
    ASSERT_EQ(bundle->GetString(id, 0, "default"), "text %1");
    ASSERT_EQ(bundle->GetString(id, GERMAN, "default"), "Text %1");
    ASSERT_EQ(bundle->GetString(id, 0x000C, "default"), "texte %1");
  }
}

TEST_F(FolderBundle, IgnoresOtherFiles) {
  WriteNeutral(R"("1": "order")");
  Write("README", "not for machines");
  Write("orders.json.bak", "{");
  Write(".orders.json.swp.json", "{");
  EXPECT_THAT(Check(), IsEmpty());
}

TEST_F(FolderBundle, ReadsAFileWithAByteOrderMark) {
  Write("orders.json", "\xEF\xBB\xBF" + MakeCatalogue("neutral", R"("1": "order")"));
  EXPECT_EQ(Open()->GetString(1, 0, "default"), "order");
}

TEST_F(FolderBundle, RefusesADamagedFolderAndKeepsTheOpenBundle) {
  WriteNeutral(R"("1": "order")");
  const auto open = Open();
  WriteNeutral(R"("1": "ord)");
  try {
    Open();
    FAIL() << "was accepted";
  } catch (const YBase::ExceptionImpl<YBase::Message>& exception) {
    EXPECT_THAT(exception.what(),
                StartsWith("YResource::OpenBundle: " + mFolder.Path().string() + "/orders.json:5: "));
  }
  EXPECT_EQ(open->GetString(1, 0, "default"), "order");
}

TEST_F(FolderBundle, ReportsAllFaultsOfAllFiles) {
  WriteNeutral(R"("1": 1, "2": null)");
  WriteCatalogue("de", R"("x": "")");
  try {
    Open();
    FAIL() << "was accepted";
  } catch (const YBase::Message& message) {
    const std::wstring text = message.GetMessage();
    EXPECT_EQ(std::count(text.begin(), text.end(), L'\n'), 2);
  }
}

TEST_F(FolderBundle, IsUnaffectedByLaterChangesToItsFiles) {
  WriteNeutral(R"("1": "order")");
  const auto bundle = Open();
  std::filesystem::remove_all(mFolder.Path() / "orders.json");
  EXPECT_EQ(bundle->GetString(1, 0, "default"), "order");
}

TEST_F(FolderBundle, RefusesEveryTruncatedFile) {
  const std::string whole = MakeCatalogue("neutral", R"("1": "order %1", "2": "item")");
  ASSERT_THAT(CheckContent(whole), IsEmpty());
  // Only the line feed after the last brace may be missing.
  for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
    ASSERT_THAT(CheckContent(whole.substr(0, length)), testing::SizeIs(1)) << length;
  }
}

TEST_F(FolderBundle, RefusesATextWithANullCharacter) {
  EXPECT_THAT(CheckContent(MakeCatalogue("neutral", R"("1": "a\u0000b")")),
              ElementsAre("orders.json:5: the text of ID 1 has a null character"));
}

TEST_F(FolderBundle, RefusesDuplicateIds) {
  EXPECT_THAT(CheckContent(MakeCatalogue("neutral", "\"1\": \"a\",\n\"1\": \"b\"")),
              ElementsAre("orders.json:6: ID 1 is already in line 5"));
  EXPECT_THAT(CheckContent(MakeCatalogue("neutral", "\"0x1\": \"a\",\n\"1\": \"b\"")),
              ElementsAre("orders.json:6: ID 1 is already in line 5"));
}

TEST_F(FolderBundle, RefusesInvalidIds) {
  for (const std::string key : {"", "0", "01", "-1", "+1", " 1", "1 ", "1.0", "x", "0x", "0x0", "4294967296",
                                "0x100000000", "1\\u0000", "99999999999999999999"}) {
    ASSERT_THAT(CheckContent(MakeCatalogue("neutral", '"' + key + "\": \"text\"")),
                ElementsAre(HasSubstr("is not an ID")))
        << key;
  }
  EXPECT_THAT(CheckContent(MakeCatalogue("neutral", R"("4294967295": "", "0xFFFFFFFE": "")")), IsEmpty());
}

TEST_F(FolderBundle, RefusesWrongTypes) {
  EXPECT_THAT(CheckContent("[]"), ElementsAre("orders.json:1: is not an object"));
  EXPECT_THAT(
      CheckContent("{\"domain\": \"12\",\n \"locale\": 7,\n \"texts\": []}"),
      ElementsAre("orders.json:1: the domain must be a number from 1 to 4294967295",
                  "orders.json:2: the locale must be a text", "orders.json:3: the texts must be an object"));
  EXPECT_THAT(CheckContent(MakeCatalogue("neutral", R"("1": {"text": "order"})")),
              ElementsAre("orders.json:5: the text of ID 1 is not a text"));
}

TEST_F(FolderBundle, RefusesInvalidDomains) {
  for (const std::string domain :
       {"0", "-1", "1.5", "12.0", "4294967296", "18446744073709551616", "true", "null"}) {
    ASSERT_THAT(CheckContent("{\"domain\": " + domain + ", \"locale\": \"neutral\", \"texts\": {}}"),
                ElementsAre("orders.json:1: the domain must be a number from 1 to 4294967295"))
        << domain;
  }
}

TEST_F(FolderBundle, RefusesMissingAndUnknownMembers) {
  EXPECT_THAT(CheckContent("{}"), ElementsAre("orders.json: has no 'domain'", "orders.json: has no 'locale'",
                                              "orders.json: has no 'texts'"));
  EXPECT_THAT(CheckContent("{\"domain\": 12, \"locale\": \"neutral\", \"texts\": {},\n\"text\": 1}"),
              ElementsAre("orders.json:2: unknown member 'text'"));
}

TEST_F(FolderBundle, RefusesDuplicateMembers) {
  EXPECT_THAT(CheckContent("{\"domain\": 12, \"locale\": \"neutral\", \"texts\": {},\n\"domain\": 12,\n"
                           "\"texts\": {}, \"locale\":\n \"neutral\"}"),
              ElementsAre("orders.json:2: member 'domain' is there twice",
                          "orders.json:3: member 'texts' is there twice",
                          "orders.json:3: member 'locale' is there twice"));
}

TEST_F(FolderBundle, NeverReadsATextAsAMember) {
  EXPECT_THAT(CheckContent("[{\"x\": {\"x\": 1}}, [[\"domain\"]]]"),
              ElementsAre("orders.json:1: is not an object"));
  EXPECT_THAT(CheckContent(MakeCatalogue("neutral", R"("1": {"x": 1}, "2": [{"y": "z"}])")),
              ElementsAre("orders.json:5: the text of ID 1 is not a text",
                          "orders.json:5: the text of ID 2 is not a text"));
  EXPECT_THAT(CheckContent(R"({"texts": {"1": "a"}, "domain": {"x": 1}, "locale": [[], {"x": 1}]})"),
              ElementsAre("orders.json:1: the domain must be a number from 1 to 4294967295",
                          "orders.json:1: the locale must be a text"));
  EXPECT_THAT(CheckContent(R"({"domain": 1, "locale": "neutral", "texts": ["x", {"y": "z"}]})"),
              ElementsAre("orders.json:1: the texts must be an object"));
}

TEST_F(FolderBundle, RefusesALocaleThatDiffersFromTheFilesName) {
  Write("orders.de.json", MakeCatalogue("fr", ""));
  EXPECT_THAT(Check(), ElementsAre("orders.de.json:3: the locale is 'fr', that of the file's name 'de'"));
}

TEST_F(FolderBundle, RefusesALocaleWithoutALanguageOfItsOwn) {
  WriteCatalogue("en-DE", "");
  WriteCatalogue("klingon", "");
  EXPECT_THAT(Check(), ElementsAre("orders.en-DE.json:3: the locale 'en-DE' has no language identifier",
                                   "orders.klingon.json:3: the locale 'klingon' has no language identifier"));
}

TEST_F(FolderBundle, RefusesFilesThatDoNotBelongTogether) {
  WriteNeutral("");
  Write("billing.de.json", MakeCatalogue("de", ""));
  Write("orders.fr.json", R"({"domain": 13, "locale": "fr", "texts": {}})");
  EXPECT_THAT(Check(), ElementsAre("billing.de.json: differs from orders.json in name or domain; "
                                   "a folder holds one catalogue",
                                   "orders.fr.json: differs from orders.json in name or domain; "
                                   "a folder holds one catalogue"));
}

TEST_F(FolderBundle, RefusesTwoFilesOfOneLanguage) {
  WriteCatalogue("de-AT", "");
  WriteCatalogue("de-at", "");
  EXPECT_THAT(Check(), ElementsAre("orders.de-at.json: is of the same language as orders.de-AT.json"));
}

TEST_F(FolderBundle, RefusesTranslationsWithDifferentPlaceholders) {
  WriteNeutral(R"("1": "%1 of %2", "2": "100 %% of %1", "3": "none")");
  WriteCatalogue("de", "\"1\": \"%2 von\",\n\"2\": \"%1 zu 100 %%, %1\",\n\"3\": \"%1\"");
  EXPECT_THAT(Check(),
              ElementsAre("orders.de.json:5: the text of ID 1 has the places %2, that in orders.json %1 %2",
                          "orders.de.json:7: the text of ID 3 has the places %1, that in orders.json none"));
}

TEST_F(FolderBundle, ComparesTranslationsWithEachOtherWithoutANeutralText) {
  WriteCatalogue("de", R"("1": "Auftrag %1")");
  WriteCatalogue("fr", R"("1": "commande")");
  EXPECT_THAT(
      Check(),
      ElementsAre("orders.fr.json:5: the text of ID 1 has the places none, that in orders.de.json %1"));
}

TEST_F(FolderBundle, ReportsFaultsInTheOrderOfFilesAndLines) {
  WriteNeutral("\"10\": \"%1\",\n\"9\": \"%2\"");
  WriteCatalogue("de", "\"9\": \"%1\",\n\"10\": \"%2\"");
  Write("orders.fr.json",
        "{\"locale\": \"it\",\n\"texts\": {\"10\": 1,\n\"9\": 2}, \"domain\":\n0, \"a\": 0");
  WriteCatalogue("it", "\"9\": \"\"");
  Write("orders.it.json", "{}");
  EXPECT_THAT(Check(),
              ElementsAre("orders.de.json:5: the text of ID 9 has the places %1, that in orders.json %2",
                          "orders.de.json:6: the text of ID 10 has the places %2, that in orders.json %1",
                          "orders.fr.json:1: the locale is 'it', that of the file's name 'fr'",
                          "orders.fr.json:2: the text of ID 10 is not a text",
                          "orders.fr.json:3: the text of ID 9 is not a text",
                          "orders.fr.json:4: the domain must be a number from 1 to 4294967295",
                          "orders.fr.json:4: unknown member 'a'",
                          StartsWith("orders.fr.json:4: syntax error"), "orders.it.json: has no 'domain'",
                          "orders.it.json: has no 'locale'", "orders.it.json: has no 'texts'"));
}

TEST_F(FolderBundle, EscapesWhatWouldForgeOrHideAFault) {
  for (const auto& [name, shown] : std::vector<std::pair<std::string, std::string>>{
           {"a\\nx.json:1: b", "a\\u000Ax.json:1: b"},
           {"\\u0000\\r\\t\\u001b[2J", "\\u0000\\u000D\\u0009\\u001B[2J"},
           {"\x7F", "\\u007F"},
           {"\xC2\x80\xC2\x9F\xC2\xA0", "\\u0080\\u009F\xC2\xA0"},
           {"\\u2028\\u2029\\u202a\\u202E\\u202f", "\\u2028\\u2029\\u202A\\u202E\xE2\x80\xAF"},
           {"\\u061c\\u061d\\u200e\\u200f\\u2010", "\\u061C\xD8\x9D\\u200E\\u200F\xE2\x80\x90"},
           {"\\u2065\\u2066\\u2069\\u206a", "\xE2\x81\xA5\\u2066\\u2069\xE2\x81\xAA"},
           {"\\\\u000A \xC3\xA4 \\ud83d\\ude00~", "\\u000A \xC3\xA4 \xF0\x9F\x98\x80~"}}) {
    const std::string catalogue = R"({"domain": 12, "locale": "neutral", "texts": {}, ")" + name + "\": 1}";
    ASSERT_THAT(CheckContent(catalogue), ElementsAre("orders.json:1: unknown member '" + shown + "'"));
  }
}

TEST_F(FolderBundle, EscapesWhatIsNotPartOfAFilesName) {
  Write("or\n\xFF\xC3\xC2\x85s.json", "[]");
  EXPECT_THAT(Check(), ElementsAre("or\\u000A\\xFF\\xC3\\u0085s.json:1: is not an object"));
}

TEST_F(FolderBundle, RefusesFilesThatAreNotRegularWithoutWaiting) {
  WriteNeutral("");
  std::filesystem::create_directory(mFolder.Path() / "orders.de.json");
  ASSERT_EQ(::mkfifo((mFolder.Path() / "orders.fr.json").c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", mFolder.Path() / "orders.it.json");
  EXPECT_THAT(Check(),
              ElementsAre("orders.de.json: is not a regular file", "orders.fr.json: is not a regular file",
                          HasSubstr("orders.it.json: cannot be read: ")));
}

TEST_F(FolderBundle, ReadsAFileOf16MiBButNoLargerOne) {
  Write("orders.json", "x");
  std::filesystem::resize_file(mFolder.Path() / "orders.json", 16 << 20);
  EXPECT_THAT(Check(), ElementsAre(StartsWith("orders.json:1: syntax error")));
  std::filesystem::resize_file(mFolder.Path() / "orders.json", (16 << 20) + 1);
  EXPECT_THAT(Check(), ElementsAre("orders.json: is larger than 16 MiB"));
}

TEST_F(FolderBundle, DoesNotReadAFileThatIsTooLarge) {
  Write("orders.json", "");
  std::filesystem::resize_file(mFolder.Path() / "orders.json", std::uintmax_t{1} << 40);
  const unsigned long before = CountBytesRead();
  EXPECT_THAT(Check(), ElementsAre("orders.json: is larger than 16 MiB"));
  EXPECT_LT(CountBytesRead() - before, 1u << 20);
}

// Such files report a size of zero.
TEST_F(FolderBundle, RefusesAFileThatGrowsWhileItIsRead) {
  const char* const file = "/proc/self/status";
  ASSERT_EQ(std::filesystem::file_size(file), 0u);
  std::filesystem::create_symlink(file, mFolder.Path() / "orders.json");
  EXPECT_THAT(Check(), ElementsAre("orders.json: grew while it was read"));
}

TEST_F(FolderBundle, AcceptsAHundredThousandTextsAndNotOneMore) {
  std::string texts;
  for (int id = 1; id < 100'000; ++id) texts += '"' + std::to_string(id) + "\": \"%1\",\n";
  WriteNeutral(texts + R"("100000": "last")");
  EXPECT_EQ(Open()->GetString(100'000, 0, "default"), "last");
  WriteNeutral(texts + "\"100000\": \"\",\n\"100001\": \"\"");
  EXPECT_THAT(Check(), ElementsAre("orders.json:100005: has more than 100000 texts"));
}

TEST_F(FolderBundle, StopsAtMoreMembersThanAnyCatalogueHas) {
  std::string members;
  for (int i = 0; i < 60'000; ++i) members += "\"x\": {\"y\": 1},\n";
  const std::vector<std::string> faults = CheckContent("{" + members + "\"z\": 1}");
  EXPECT_EQ(faults.size(), 50'003u);
  EXPECT_EQ(faults.back(), "orders.json:50002: has more than 100000 texts");
}

TEST_F(FolderBundle, RefusesAFolderWithoutACatalogue) {
  EXPECT_THAT(Check(), ElementsAre(mFolder.Path().string() + ": contains no catalogue"));
  EXPECT_THROW(OpenBundle(mFolder.Wide("missing").c_str()), YBase::ExceptionImpl<YBase::Message>);
}

TEST_F(FolderBundle, ReadsAFolderWithANonAsciiName) {
  const std::filesystem::path folder = mFolder.Path() / "gr\xC3\xBC\xC3\x9F";
  std::filesystem::create_directory(folder);
  std::ofstream(folder / "orders.json") << MakeCatalogue("neutral", R"("1": "order")");
  const std::wstring name = mFolder.Path().wstring() + L"/gr\u00FC\u00DF";
  EXPECT_EQ(OpenBundle(name.c_str())->GetString(1, 0, "default"), "order");
}

TEST_F(FolderBundle, RefusesNull) {
  EXPECT_DEBUG_DEATH(EXPECT_THROW(OpenBundle(nullptr), YBase::ExceptionImpl<YBase::Message>), "folder");
  EXPECT_DEBUG_DEATH(YResource::CheckCatalogues(static_cast<const wchar_t*>(nullptr)), "folder");
}

}  // namespace

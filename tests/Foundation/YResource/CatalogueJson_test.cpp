#include <YResource/FolderBundle.h>

#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

#include "support/TemporaryDirectory.h"

namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* NOT_A_TEXT = "the text of ID 1 is not a text";

/// A catalogue whose line 5 is `texts`.
std::string MakeCatalogue(const std::string& texts) {
  return "{\n\"domain\": 12,\n\"locale\": \"neutral\",\n\"texts\": {\n" + texts + "\n}\n}\n";
}

class CatalogueJson : public testing::Test {
 protected:
  std::vector<std::string> Check(const std::string& content) {
    std::ofstream(mFolder.Path() / "orders.json", std::ios::binary) << content;
    auto faults = YResource::CheckCatalogues(mFolder.Path().wstring().c_str());
    for (std::string& fault : faults) fault.erase(0, mFolder.Path().string().size() + 1);
    return faults;
  }
  std::vector<std::string> CheckText(const std::string& value) {
    return Check(MakeCatalogue("\"1\": " + value));
  }

  void ExpectRefused(const std::string& value) {
    ASSERT_THAT(CheckText(value), Contains(AllOf(StartsWith("orders.json:5: "), Not(HasSubstr(NOT_A_TEXT)))))
        << testing::PrintToString(value);
  }

  Support::TemporaryDirectory mFolder;
};

TEST_F(CatalogueJson, AcceptsEveryFormOfAString) {
  for (const char* value :
       {R"("a")", R"("")", R"("\"\\\/\b\f\n\r\t")", R"("\u00e4\u00E4\uFFFF")", R"("\ud83d\uDE00")",
        R"("\uD800\uDC00\udbff\udfff")", "\"\x7F\"", "\"\xC2\x80\xDF\xBF\"", "\"\xE0\xA0\x80\xEF\xBF\xBF\"",
        "\"\xED\x9F\xBF\xEE\x80\x80\"", "\"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\"", "\"\xE2\x80\xA8\"",
        " \t\r\n\"a\"\r\n\t "}) {
    ASSERT_THAT(CheckText(value), IsEmpty()) << value;
  }
}

TEST_F(CatalogueJson, RecognisesThatEveryOtherValueIsNotAText) {
  for (const char* value : {"0",
                            "-0",
                            "1",
                            "-12",
                            "120",
                            "0.5",
                            "-0.05",
                            "1.50",
                            "0e1",
                            "0E+1",
                            "1e-2",
                            "1E2",
                            "-1.5e10",
                            "1e-400",
                            "123456789012345678901234567890",
                            "true",
                            "false",
                            "null",
                            "[]",
                            "{}",
                            "[ ]",
                            "{ }",
                            "[[], {}]",
                            R"([1, "a", null])",
                            R"({"": 1})",
                            R"({"a": {"a": [0]}, "b": "c"})",
                            R"({"a": 1, "a": 2})"}) {
    ASSERT_THAT(CheckText(value), ElementsAre("orders.json:5: "s + NOT_A_TEXT)) << value;
  }
}

TEST_F(CatalogueJson, RefusesHalvesOfSurrogatePairs) {
  for (const char* value : {R"("\ud800")", R"("\uDBFF")", R"("\udc00")", R"("\uDFFF")", R"("\ud800x")",
                            R"("\ud800\n")", R"("\ud800\u0041")", R"("\ud800\ud800")", R"("\udc00\ud800")",
                            R"("\ud83d\ude0")", R"("\ud83d\\ude00")", R"("\ud800\uE000")"}) {
    ExpectRefused(value);
  }
}

TEST_F(CatalogueJson, RefusesControlCharactersInStrings) {
  for (char character = 0; character < ' '; ++character) {
    ExpectRefused("\"a"s + character + "b\"");
    ASSERT_THAT(Check(MakeCatalogue("\"1"s + character + "\": \"a\"")),
                Contains(StartsWith("orders.json:5: ")));
  }
}

TEST_F(CatalogueJson, RefusesInvalidEscapes) {
  for (const char* value : {R"("\a")", R"("\'")", R"("\0")", R"("\x41")", R"("\U0041")", R"("\u")",
                            R"("\u004")", R"("\u00g1")", R"("\u+041")", "\"\\\n\"", "\"\\\xC3\xA4\""}) {
    ExpectRefused(value);
  }
}

TEST_F(CatalogueJson, RefusesWhatIsNotUtf8) {
  for (const char* value :
       {"\"\x80\"", "\"\xC0\x80\"", "\"\xC1\xBF\"", "\"\xC3\"", "\"\xC3\x28\"", "\"\xE0\x80\x80\"",
        "\"\xE2\x82\"", "\"\xED\xA0\x80\"", "\"\xED\xBF\xBF\"", "\"\xF0\x80\x80\x80\"",
        "\"\xF4\x90\x80\x80\"", "\"\xF8\x88\x80\x80\x80\"", "\"\xFE\"", "\"\xFF\"", "\xFF"}) {
    ExpectRefused(value);
  }
}

TEST_F(CatalogueJson, RefusesInvalidNumbers) {
  for (const char* value :
       {"01",    "00",    "-01",   "+1", "-",   "--1",      "-a",        "1.",          "-1.",
        ".5",    "1.e2",  "1.2.3", "1e", "1e+", "1e-",      "0e",        "1eE2",        "1e2.5",
        "1_000", "1,000", "0x10",  "1a", "NaN", "Infinity", "-Infinity", "\xEF\xBC\x91"}) {
    ExpectRefused(value);
  }
}

TEST_F(CatalogueJson, RefusesNumbersThatAreTooLarge) {
  ExpectRefused("1e400");
  ExpectRefused("-1" + std::string(400, '0'));
}

TEST_F(CatalogueJson, RefusesInvalidWords) {
  for (const char* value : {"True", "nul", "nulll", "tru", "falsey", "undefined", "a", "'a'", "\"a\" \"b\"",
                            "\"a\"b", "b\"a\"", "`a`", "@", "\\u0061"}) {
    ExpectRefused(value);
  }
}

TEST_F(CatalogueJson, RefusesBracketsAndCommasOutOfPlace) {
  for (const char* value : {"[1,]",
                            "[,1]",
                            "[1,,2]",
                            "[,]",
                            "[1 2]",
                            "[1:2]",
                            "[1}",
                            "{1}",
                            "{\"a\"}",
                            "{\"a\":}",
                            "{\"a\" 1}",
                            "{\"a\":1,}",
                            "{,\"a\":1}",
                            "{\"a\":1 \"b\":2}",
                            "{\"a\"::1}",
                            "{:1}",
                            "{a:1}",
                            "{1:1}",
                            "{null:1}",
                            "{'a':1}",
                            "{[]:1}",
                            "{\"a\":1]",
                            "[1]]",
                            "\"a\",",
                            ",",
                            "\"a\",,\"2\":\"b\"",
                            "\"a\" \"2\":\"b\"",
                            "\"a\";\"2\":\"b\""}) {
    const std::vector<std::string> faults = CheckText(value);
    ASSERT_THAT(faults, Contains(AllOf(StartsWith("orders.json:"), Not(HasSubstr(NOT_A_TEXT))))) << value;
  }
}

TEST_F(CatalogueJson, RefusesWhatIsNeitherJsonNorBlank) {
  for (const char* value : {"/**/ \"a\"", "// a\n\"a\"", "# a\n\"a\"", "\x0B\"a\"", "\"a\"\x0C",
                            "\xC2\xA0\"a\"", "\"a\"\xE2\x80\x8B", "\x7F\"a\""}) {
    ExpectRefused(value);
  }
}

TEST_F(CatalogueJson, RefusesAnythingAfterTheLastBrace) {
  const std::string sound = MakeCatalogue("");
  ASSERT_THAT(Check(sound + " \t\r\n"), IsEmpty());
  for (const std::string& rest :
       {"x"s, "}"s, "{}"s, "\0"s, "\0\0"s, "\n\0x"s, ","s, "\""s, "\x1A"s, "// end"s}) {
    ASSERT_THAT(Check(sound + rest), Contains(StartsWith("orders.json:"))) << testing::PrintToString(rest);
  }
}

TEST_F(CatalogueJson, AcceptsOneByteOrderMarkAndNoOtherEncoding) {
  const std::string mark = "\xEF\xBB\xBF";
  const std::string sound = MakeCatalogue("");
  EXPECT_THAT(Check(mark + sound), IsEmpty());
  for (const std::string& text : {mark + mark + sound, mark.substr(0, 2) + sound, mark, "\0"s + sound,
                                  "{\0}\0"s, "\xFF\xFE{\0}\0"s, "\xFE\xFF\0{\0}"s}) {
    ASSERT_THAT(Check(text), ElementsAre(StartsWith("orders.json:1: "))) << testing::PrintToString(text);
  }
}

TEST_F(CatalogueJson, RefusesAFileWithoutAValue) {
  for (const char* text : {"", " ", "\t", "\r\n"}) {
    ASSERT_THAT(Check(text), ElementsAre(StartsWith("orders.json:1: "))) << testing::PrintToString(text);
  }
}

TEST_F(CatalogueJson, NamesTheLineOfTheError) {
  EXPECT_THAT(CheckText("\"a\nb\""), ElementsAre(StartsWith("orders.json:5: ")))
      << "not the line after the line feed";
  EXPECT_THAT(CheckText("\"a\",\r\n\r\n\"2\": \"b"), ElementsAre(StartsWith("orders.json:7: ")));
  EXPECT_THAT(Check("{\n\n"), ElementsAre(StartsWith("orders.json:2: "))) << "the last line";
  EXPECT_THAT(Check(MakeCatalogue("") + "x"), ElementsAre(StartsWith("orders.json:8: ")));
}

TEST_F(CatalogueJson, RefusesDeepNestingWithoutRunningOutOfStack) {
  const std::string deep = std::string(200'000, '[') + std::string(200'000, ']');
  EXPECT_THAT(Check(deep), ElementsAre("orders.json:1: is not an object"));
  EXPECT_THAT(CheckText(deep), ElementsAre("orders.json:5: "s + NOT_A_TEXT));
  std::string objects;
  for (int i = 0; i < 200'000; ++i) objects += "{\"\":";
  EXPECT_THAT(CheckText(objects), Contains(Not(HasSubstr(NOT_A_TEXT)))) << "not closed";
}

}  // namespace

#include <string>

#include <rapidcheck/gtest.h>

#include <YLog/SensitiveData.h>

#include "MaskingReference.h"
#include "RandomText.h"

namespace {

using Support::MaskAttributeSlowly;
using Support::RandomText;
using YLog::ReplaceSensitiveMessage;

TEST(ReplaceSensitiveMessage, ReplacesOnlyTheTextBetweenTheQuotes) {
  EXPECT_EQ(ReplaceSensitiveMessage("<login user=\"ann\" pwd=\"s3cret\" host=\"h\"/>", "pwd", "***"),
            "<login user=\"ann\" pwd=\"***\" host=\"h\"/>");
}

TEST(ReplaceSensitiveMessage, LeavesAnEmptyValueForANullReplacement) {
  EXPECT_EQ(ReplaceSensitiveMessage("set pwd=\"s3cret\"", "pwd", nullptr), "set pwd=\"\"");
  EXPECT_EQ(ReplaceSensitiveMessage("set pwd=\"s3cret\"", "pwd", ""), "set pwd=\"\"");
}

TEST(ReplaceSensitiveMessage, LeavesAnAttributeAtTheVeryStartAlone) {
  EXPECT_EQ(ReplaceSensitiveMessage("pwd=\"s3cret\"", "pwd", "***"), "pwd=\"s3cret\"");
}

TEST(ReplaceSensitiveMessage, LeavesANameThatMerelyEndsInTheTagAlone) {
  EXPECT_EQ(ReplaceSensitiveMessage("x oldpwd=\"s3cret\"", "pwd", "***"), "x oldpwd=\"s3cret\"");
}

TEST(ReplaceSensitiveMessage, RequiresABlankBeforeTheNameAndAcceptsNoOtherWhiteSpace) {
  EXPECT_EQ(ReplaceSensitiveMessage("x\tpwd=\"a\"\npwd=\"b\"", "pwd", "***"), "x\tpwd=\"a\"\npwd=\"b\"");
}

TEST(ReplaceSensitiveMessage, RequiresTheExactCaseAndTheEqualsSignRightAfterTheName) {
  const char* text = "x PWD=\"a\" pwd =\"b\" pwd= \"c\" pwd='d'";
  EXPECT_EQ(ReplaceSensitiveMessage(text, "pwd", "***"), text);
}

TEST(ReplaceSensitiveMessage, ReplacesEveryCompleteOccurrence) {
  EXPECT_EQ(ReplaceSensitiveMessage(" p=\"1\" p=\"22\" p=\"\" p=\"4444\"", "p", "#"),
            " p=\"#\" p=\"#\" p=\"#\" p=\"#\"");
}

TEST(ReplaceSensitiveMessage, LeavesAnUnterminatedLastValueAlone) {
  EXPECT_EQ(ReplaceSensitiveMessage(" p=\"1\" p=\"unended", "p", "#"), " p=\"#\" p=\"unended");
  EXPECT_EQ(ReplaceSensitiveMessage(" p=\"", "p", "#"), " p=\"");
}

TEST(ReplaceSensitiveMessage, EndsAValueAtAQuoteAfterABackslash) {
  EXPECT_EQ(ReplaceSensitiveMessage(" p=\"se\\\"cret\"", "p", "#"), " p=\"#\"cret\"");
}

TEST(ReplaceSensitiveMessage, RequiresABlankBetweenTwoAttributes) {
  EXPECT_EQ(ReplaceSensitiveMessage(" p=\"1\"p=\"2\" p=\"3\"", "p", "#"), " p=\"#\"p=\"2\" p=\"#\"");
}

TEST(ReplaceSensitiveMessage, TreatsAnAttributeInsideAValueAsPartOfIt) {
  EXPECT_EQ(ReplaceSensitiveMessage(" p=\"a p=\"b\"", "p", "#"), " p=\"#\"b\"");
}

TEST(ReplaceSensitiveMessage, DoesNotSearchItsReplacements) {
  EXPECT_EQ(ReplaceSensitiveMessage(" p=\"1\" p=\"2\"", "p", " p=\"x\""), " p=\" p=\"x\"\" p=\" p=\"x\"\"");
}

TEST(ReplaceSensitiveMessage, ReturnsAnEmptyTextForAnEmptyText) {
  EXPECT_EQ(ReplaceSensitiveMessage("", "p", "#"), "");
}

TEST(ReplaceSensitiveMessage, TakesAnyNameLiterally) {
  EXPECT_EQ(ReplaceSensitiveMessage("x =\"secret\"", "", "#"), "x =\"#\"");
  EXPECT_EQ(ReplaceSensitiveMessage("x a.*[b]$=\"secret\" aXb=\"y\"", "a.*[b]$", "#"),
            "x a.*[b]$=\"#\" aXb=\"y\"");
  EXPECT_EQ(ReplaceSensitiveMessage("x two words=\"secret\"", "two words", "#"), "x two words=\"#\"");
  EXPECT_EQ(ReplaceSensitiveMessage("x a=\"b=\"secret\"", "a=\"b", "#"), "x a=\"b=\"#\"");
  EXPECT_EQ(ReplaceSensitiveMessage("x \xC3\xBC=\"secret\"", "\xC3\xBC", "#"), "x \xC3\xBC=\"#\"");
}

TEST(ReplaceSensitiveMessage, KeepsBytesThatAreNotText) {
  EXPECT_EQ(ReplaceSensitiveMessage("\xFF\x01 p=\"\xC3\x28\x02\"\x7F\xFE", "p", "#"),
            "\xFF\x01 p=\"#\"\x7F\xFE");
}

TEST(ReplaceSensitiveMessage, FindsNothingForANameLongerThanTheText) {
  EXPECT_EQ(ReplaceSensitiveMessage(" p=\"1\"", std::string(1'000'000, 'p').c_str(), "#"), " p=\"1\"");
}

TEST(ReplaceSensitiveMessage, ConvertsWideCharactersToUTF8) {
  EXPECT_EQ(ReplaceSensitiveMessage(L"\u00FC p=\"\u20AC\" \U0001F600", "p", "\xC3\xB6"),
            "\xC3\xBC p=\"\xC3\xB6\" \xF0\x9F\x98\x80");
}

TEST(ReplaceSensitiveMessage, ReplacesInvalidWideCharacters) {
  const wchar_t text[] = {0xD800, L' ', L'p', L'=', L'"', L'1', L'"', 0};
  EXPECT_EQ(ReplaceSensitiveMessage(text, "p", "#"), "\xEF\xBF\xBD p=\"#\"");
}

TEST(ReplaceSensitiveMessageDeathTest, RefusesANullTextAndANullNameAndReturnsNoText) {
  const char* noText = nullptr;
  const wchar_t* noWideText = nullptr;
  EXPECT_DEBUG_DEATH(EXPECT_EQ(ReplaceSensitiveMessage(noText, "p", "#"), ""), "text");
  EXPECT_DEBUG_DEATH(EXPECT_EQ(ReplaceSensitiveMessage(noWideText, "p", "#"), ""), "text");
  EXPECT_DEBUG_DEATH(EXPECT_EQ(ReplaceSensitiveMessage(" p=\"1\"", nullptr, "#"), ""), "tagName");
}

RC_GTEST_PROP(ReplaceSensitiveMessage, AgreesWithTheReference, ()) {
  const std::string text = *RandomText({" p=\"", "p=\"", " p", "=", "\"", "\\", " ", "p", "x", "\n"});
  const std::string replacement = *rc::gen::element<std::string>("", "#", "***", "\"", " p=\"y\"", "a\\");
  RC_ASSERT(ReplaceSensitiveMessage(text.c_str(), "p", replacement.c_str()) ==
            MaskAttributeSlowly(text, "p", replacement));
}

RC_GTEST_PROP(ReplaceSensitiveMessage, AgreesWithTheReferenceForAnyName, ()) {
  const std::string name = *RandomText({" ", "p", "=", "\"", "pp"});
  const std::string text = *RandomText({" ", "p", "=", "\"", "pp", " " + name + "=\"", name});
  RC_ASSERT(ReplaceSensitiveMessage(text.c_str(), name.c_str(), "#") == MaskAttributeSlowly(text, name, "#"));
}

}  // namespace

#include <YBase/TextConversion.h>

#include <rapidcheck/gtest.h>

#include <limits>
#include <string>

namespace {

using YBase::UTF8ToWideChar;
using YBase::WideCharToUTF8;

constexpr wchar_t REPLACEMENT = 0xFFFD;

std::wstring Replacements(std::size_t count) {
  return std::wstring(count, REPLACEMENT);
}

TEST(TextConversion, TreatsNullAsAnEmptyText) {
  EXPECT_EQ(WideCharToUTF8(nullptr), "");
  EXPECT_EQ(UTF8ToWideChar(nullptr), L"");
}

TEST(TextConversion, ConvertsTheLimitsOfEachLength) {
  const std::pair<const wchar_t*, const char*> TEXTS[] = {
      {L"\x7F", "\x7F"},
      {L"\x80", "\xC2\x80"},
      {L"\x7FF", "\xDF\xBF"},
      {L"\x800", "\xE0\xA0\x80"},
      {L"\xD7FF", "\xED\x9F\xBF"},
      {L"\xE000", "\xEE\x80\x80"},
      {L"\xFFFF", "\xEF\xBF\xBF"},
      {L"\x10000", "\xF0\x90\x80\x80"},
      {L"\x10FFFF", "\xF4\x8F\xBF\xBF"},
  };
  for (const auto& [wide, utf8] : TEXTS) {
    EXPECT_EQ(WideCharToUTF8(wide), utf8);
    EXPECT_EQ(UTF8ToWideChar(utf8), wide);
  }
}

TEST(TextConversion, KeepsControlCharactersAndTheByteOrderMark) {
  EXPECT_EQ(UTF8ToWideChar("\x01\t\r\n\x1B"), L"\x01\t\r\n\x1B");
  EXPECT_EQ(UTF8ToWideChar(YBase::UNICODE_BYTE_ORDER_MARK), L"\xFEFF");
}

TEST(WideCharToUTF8, ReplacesWhatIsNotAScalarValue) {
  const wchar_t bad[] = {L'a', 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0x110000, L'z', 0};
  EXPECT_EQ(WideCharToUTF8(bad), "a\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDz");
}

TEST(WideCharToUTF8, ReplacesBothHalvesOfASurrogatePair) {
  const wchar_t pair[] = {0xD83D, 0xDE00, 0};
  EXPECT_EQ(WideCharToUTF8(pair), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(WideCharToUTF8, ReplacesNegativeCharacters) {
  const wchar_t bad[] = {static_cast<wchar_t>(-1), std::numeric_limits<wchar_t>::min() + 1, 0};
  EXPECT_EQ(WideCharToUTF8(bad), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(EncodeUTF8, EncodesACharacterOfAnyLength) {
  char storage[4];
  EXPECT_EQ(YBase::EncodeUTF8(L'\0', storage), std::string_view("\0", 1));
  EXPECT_EQ(YBase::EncodeUTF8(L'a', storage), "a");
  EXPECT_EQ(YBase::EncodeUTF8(0x10FFFF, storage), "\xF4\x8F\xBF\xBF");
  EXPECT_EQ(YBase::EncodeUTF8(0x110000, storage), "\xEF\xBF\xBD");
}

TEST(UTF8ToWideChar, ReplacesATruncatedCharacterOnce) {
  EXPECT_EQ(UTF8ToWideChar("\xC3"), Replacements(1));
  EXPECT_EQ(UTF8ToWideChar("\xE2\x82"), Replacements(1));
  EXPECT_EQ(UTF8ToWideChar("\xF0\x9F\x98"), Replacements(1));
  EXPECT_EQ(UTF8ToWideChar("\xE2\x82"
                           "A"),
            Replacements(1) + L"A");
  EXPECT_EQ(UTF8ToWideChar("\xE2\x82\xC3\xA4"), Replacements(1) + L"\xE4");
}

TEST(UTF8ToWideChar, ReplacesEachByteOfAnOverlongForm) {
  EXPECT_EQ(UTF8ToWideChar("\xC0\x80"), Replacements(2));
  EXPECT_EQ(UTF8ToWideChar("\xC1\xBF"), Replacements(2));
  EXPECT_EQ(UTF8ToWideChar("\xE0\x9F\xBF"), Replacements(3));
  EXPECT_EQ(UTF8ToWideChar("\xF0\x80\x80"), Replacements(3));
  EXPECT_EQ(UTF8ToWideChar("\xF0\x8F\xBF\xBF"), Replacements(4));
}

TEST(UTF8ToWideChar, ReplacesEachByteOfASurrogate) {
  EXPECT_EQ(UTF8ToWideChar("\xED\xA0\x80"), Replacements(3));
  EXPECT_EQ(UTF8ToWideChar("\xED\xBF\xBF"), Replacements(3));
  EXPECT_EQ(UTF8ToWideChar("\xED\xA0"
                           "A"),
            Replacements(2) + L"A");
}

TEST(UTF8ToWideChar, ReplacesEachByteOfAValueBeyondTheLastCodePoint) {
  EXPECT_EQ(UTF8ToWideChar("\xF4\x90\x80\x80"), Replacements(4));
  EXPECT_EQ(UTF8ToWideChar("\xF5\x80\x80\x80"), Replacements(4));
  EXPECT_EQ(UTF8ToWideChar("\xF8\x88\x80\x80\x80"), Replacements(5));
  EXPECT_EQ(UTF8ToWideChar("\xFE\xFF"), Replacements(2));
}

TEST(UTF8ToWideChar, ReplacesStrayContinuationBytes) {
  EXPECT_EQ(UTF8ToWideChar("\x80"
                           "a\xBF\xBF"),
            L"\xFFFD"
            L"a\xFFFD\xFFFD");
  EXPECT_EQ(UTF8ToWideChar("\xC3\xA4\xA4"), L"\xE4\xFFFD");
}

// What the Unicode Standard gives as examples of substitution by maximal subparts.
TEST(UTF8ToWideChar, AgreesWithThePublishedExamples) {
  EXPECT_EQ(UTF8ToWideChar("\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41"), Replacements(8) + L"A");
  EXPECT_EQ(UTF8ToWideChar("\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41"), Replacements(8) + L"A");
  EXPECT_EQ(UTF8ToWideChar("\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42"),
            Replacements(5) + L"A" + Replacements(2) + L"B");
  EXPECT_EQ(UTF8ToWideChar("\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41"), Replacements(4) + L"A");
}

RC_GTEST_PROP(TextConversion, RoundTripsEveryTextOfScalarValues, ()) {
  const auto scalarValue = rc::gen::suchThat(rc::gen::inRange<int>(1, 0x110000),
                                             [](int value) { return value < 0xD800 || value > 0xDFFF; });
  std::wstring text;
  for (const int value : *rc::gen::container<std::vector<int>>(scalarValue))
    text += static_cast<wchar_t>(value);
  RC_ASSERT(UTF8ToWideChar(WideCharToUTF8(text.c_str()).c_str()) == text);
}

RC_GTEST_PROP(TextConversion, TurnsAnyBytesIntoWellFormedUtf8, ()) {
  const auto bytes = *rc::gen::container<std::string>(rc::gen::map(rc::gen::inRange(1, 256), [](int byte) {
    return static_cast<char>(static_cast<unsigned char>(byte));
  }));
  const std::wstring wide = UTF8ToWideChar(bytes.c_str());
  RC_ASSERT(wide.size() <= bytes.size());
  RC_ASSERT(wide.empty() == bytes.empty());
  RC_ASSERT(UTF8ToWideChar(WideCharToUTF8(wide.c_str()).c_str()) == wide);
}

RC_GTEST_PROP(TextConversion, TurnsAnyWideCharactersIntoWellFormedUtf8, (const std::vector<int>& values)) {
  std::wstring text;
  for (const int value : values) text += static_cast<wchar_t>(value != 0 ? value : 1);
  const std::wstring replaced = UTF8ToWideChar(WideCharToUTF8(text.c_str()).c_str());
  RC_ASSERT(replaced.size() == text.size());
  RC_ASSERT(UTF8ToWideChar(WideCharToUTF8(replaced.c_str()).c_str()) == replaced);
}

}  // namespace

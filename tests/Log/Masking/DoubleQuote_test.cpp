#include "Masking/DoubleQuote.h"

#include <string>

#include <rapidcheck/gtest.h>

#include "MaskingReference.h"
#include "RandomText.h"

namespace {

using Support::FindFirstDoubleQuoteSlowly;
using Support::RandomText;
using YLog::hFindFirstDoubleQuote;

constexpr std::size_t NOT_FOUND = std::string_view::npos;

TEST(FindFirstDoubleQuote, FindsTheFirstOneAtOrAfterTheStart) {
  EXPECT_EQ(hFindFirstDoubleQuote(R"(a"b"c)", 0), 1U);
  EXPECT_EQ(hFindFirstDoubleQuote(R"(a"b"c)", 1), 1U);
  EXPECT_EQ(hFindFirstDoubleQuote(R"(a"b"c)", 2), 3U);
  EXPECT_EQ(hFindFirstDoubleQuote(R"(a"b"c)", 4), NOT_FOUND);
}

TEST(FindFirstDoubleQuote, SkipsEscapedOnes) {
  EXPECT_EQ(hFindFirstDoubleQuote(R"(\"\"")", 0), 4U);
  EXPECT_EQ(hFindFirstDoubleQuote(R"(a\"b)", 0), NOT_FOUND);
}

TEST(FindFirstDoubleQuote, TreatsAQuoteAfterAnEscapedBackslashAsEscaped) {
  EXPECT_EQ(hFindFirstDoubleQuote(R"(a\\"b")", 0), 5U);
}

TEST(FindFirstDoubleQuote, DoesNotCountABackslashBeforeTheStart) {
  EXPECT_EQ(hFindFirstDoubleQuote(R"(\"x")", 1), 1U);
}

TEST(FindFirstDoubleQuote, FindsNothingAtOrPastTheEnd) {
  EXPECT_EQ(hFindFirstDoubleQuote("", 0), NOT_FOUND);
  EXPECT_EQ(hFindFirstDoubleQuote("\"", 1), NOT_FOUND);
  EXPECT_EQ(hFindFirstDoubleQuote("\"", NOT_FOUND), NOT_FOUND);
}

RC_GTEST_PROP(FindFirstDoubleQuote, AgreesWithTheReference, ()) {
  const std::string text = *RandomText({"\"", "\\", "x"});
  for (std::size_t start = 0; start <= text.size(); ++start) {
    RC_ASSERT(hFindFirstDoubleQuote(text, start) == FindFirstDoubleQuoteSlowly(text, start));
  }
}

}  // namespace

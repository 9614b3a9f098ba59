#include <string>

#include <gtest/gtest.h>

#include <YLog/Destination.h>

namespace {

std::string Layout(const char* header, const char* message) {
  return YLog::FormatMultiLineMessageText(0, header, message);
}

TEST(RecordLayout, PutsOneBlankBetweenHeaderAndMessage) {
  EXPECT_EQ(Layout("H", "a"), "H a");
}

TEST(RecordLayout, PutsEachFurtherLineOnASeparateLineWithoutTheHeader) {
  EXPECT_EQ(Layout("H", "a\nb\nc"), "H a\nb\nc");
}

TEST(RecordLayout, TreatsAnyRunOfCarriageReturnsAndLineFeedsAsOneLineBreak) {
  EXPECT_EQ(Layout("H", "a\r\n\r\nb\n"), "H a\nb");
  EXPECT_EQ(Layout("H", "a\rb\n\n\r\rc"), "H a\nb\nc");
}

TEST(RecordLayout, DropsLineBreaksAtBothEndsOfTheMessage) {
  EXPECT_EQ(Layout("H", "\r\n\na\n\r\n"), "H a");
}

TEST(RecordLayout, KeepsBlanksAndTabs) {
  EXPECT_EQ(Layout("H", "  a \n\t b "), "H   a \n\t b ");
}

TEST(RecordLayout, DropsLineBreaksBeforeTheHeader) {
  EXPECT_EQ(Layout("\n\nH", "x"), "H x");
}

TEST(RecordLayout, BeginsWithTheMessageIfTheHeaderIsEmpty) {
  EXPECT_EQ(Layout("", "x\ny"), "x\ny");
  EXPECT_EQ(Layout("\r\n", "x"), "x");
  EXPECT_EQ(Layout(nullptr, "x"), "x");
}

TEST(RecordLayout, IsHeaderAndBlankIfTheMessageIsEmpty) {
  EXPECT_EQ(Layout("H", ""), "H ");
  EXPECT_EQ(Layout("H", nullptr), "H ");
}

TEST(RecordLayout, IsEmptyIfTheMessageConsistsOfLineBreaks) {
  EXPECT_EQ(Layout("H", "\r\n\n"), "");
}

TEST(RecordLayout, IsEmptyIfBothAreEmpty) {
  EXPECT_EQ(Layout("", ""), "");
  EXPECT_EQ(Layout(nullptr, nullptr), "");
}

TEST(RecordLayout, KeepsControlBytesAndInvalidUTF8) {
  EXPECT_EQ(Layout("H", "\x01\x7F\xFF\xC3"), "H \x01\x7F\xFF\xC3");
}

TEST(RecordLayout, AcceptsTextsOfAnyLength) {
  const std::string line(1'000'000, 'x');
  EXPECT_EQ(Layout("H", (line + "\r\n" + line).c_str()), "H " + line + "\n" + line);
}

TEST(RecordLayout, DoesNotUseTheMessageID) {
  EXPECT_EQ(YLog::FormatMultiLineMessageText(7, "H", "a"), "H a");
}

}  // namespace

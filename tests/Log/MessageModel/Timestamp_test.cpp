#include <YLog/Timestamp.h>

#include <optional>
#include <string>

#include <rapidcheck/gtest.h>

#include "support/TimeZone.h"

namespace {

using Support::SetTimeZone;
using YDataType::DateTime;
using YLog::Timestamp;

constexpr const char* DATE = "2024-03-05 09:07:03.042";

std::string WithDate(const std::string& rest) {
  return DATE + rest;
}

/// The text that a timestamp prints after reading this one; nothing if it refuses it.
std::optional<std::string> ReadAndPrint(const std::string& text) {
  Timestamp timestamp;
  if (timestamp.FromISO8601String(text.c_str()) == 0) return std::nullopt;
  return timestamp.ToISO8601String();
}

TEST(Timestamp, BeginsIn1970WithoutAnOffset) {
  EXPECT_EQ("1970-01-01 00:00:00.000", Timestamp().ToISO8601String());
}

TEST(Timestamp, PrintsAndReadsAnOffsetEastAndWestOfUtc) {
  EXPECT_EQ(WithDate("+01:00"), ReadAndPrint(WithDate("+01:00")));
  EXPECT_EQ(WithDate("-00:30"), ReadAndPrint(WithDate("-00:30")));
}

TEST(Timestamp, NeverPrintsAnOffsetOfZero) {
  EXPECT_EQ(DATE, ReadAndPrint(WithDate("+00:00")));
  EXPECT_EQ(DATE, ReadAndPrint(WithDate("-00:00")));
}

TEST(Timestamp, ParsesAnOffsetOfFourteenHoursAndRefusesFifteen) {
  EXPECT_EQ(WithDate("+14:00"), ReadAndPrint(WithDate("+14:00")));
  EXPECT_EQ(WithDate("-14:59"), ReadAndPrint(WithDate("-14:59")));
  EXPECT_EQ(std::nullopt, ReadAndPrint(WithDate("+15:00")));
  EXPECT_EQ(std::nullopt, ReadAndPrint(WithDate("-15:00")));
}

TEST(Timestamp, RefusesSixtyMinutesOfOffset) {
  EXPECT_EQ(WithDate("+05:59"), ReadAndPrint(WithDate("+05:59")));
  EXPECT_EQ(std::nullopt, ReadAndPrint(WithDate("+05:60")));
}

TEST(Timestamp, ParsesOffsetsOfOneDigitAndPrintsThemWithTwo) {
  EXPECT_EQ(WithDate("+05:03"), ReadAndPrint(WithDate("+5:3")));
}

TEST(Timestamp, OffsetWithoutAColonLeavesTheObjectUnchanged) {
  for (const char* offset : {"+05", "+05-30", "+", "-"}) {
    Timestamp timestamp;
    ASSERT_NE(0U, timestamp.FromISO8601String("2001-02-03 04:05:06.007-08:00"));
    EXPECT_EQ(0U, timestamp.FromISO8601String(WithDate(offset).c_str())) << offset;
    EXPECT_EQ("2001-02-03 04:05:06.007-08:00", timestamp.ToISO8601String()) << offset;
  }
}

// Numbers are read as by the C library, and 16 bits of them are kept.
TEST(Timestamp, ReadsTheNumbersOfAnOffsetWithBlanksAndSigns) {
  EXPECT_EQ(WithDate("+05:30"), ReadAndPrint(WithDate("+ 5:30")));
  EXPECT_EQ(WithDate("+05:30"), ReadAndPrint(WithDate("++5: \t+30")));
  EXPECT_EQ(WithDate("+00:30"), ReadAndPrint(WithDate("+:30")));
  EXPECT_EQ(WithDate("+05:00"), ReadAndPrint(WithDate("+5:")));
  EXPECT_EQ(std::nullopt, ReadAndPrint(WithDate("+-1:00")));
  EXPECT_EQ(std::nullopt, ReadAndPrint(WithDate("+1:-1")));
  EXPECT_EQ(WithDate("+01:00"), ReadAndPrint(WithDate("+-65535:00")));
  EXPECT_EQ(WithDate("+01:02"), ReadAndPrint(WithDate("+65537:65538")));
  EXPECT_EQ(std::nullopt, ReadAndPrint(WithDate("+99999999999999999999999:00")));
}

TEST(Timestamp, CountsTheCharactersUpToTheEndOfTheMinutes) {
  Timestamp timestamp;
  EXPECT_EQ(23U, timestamp.FromISO8601String(WithDate("Z+05:30").c_str()));
  EXPECT_EQ(29U, timestamp.FromISO8601String(WithDate("+05:30 [HOST:").c_str()));
  EXPECT_EQ(29U, timestamp.FromISO8601String(WithDate("+5:003x").c_str()));
  EXPECT_EQ(26U, timestamp.FromISO8601String(WithDate("+5:x").c_str()));
}

TEST(Timestamp, ReadsAnOffsetWithoutADateAsThatOf1970) {
  Timestamp timestamp;
  EXPECT_EQ(6U, timestamp.FromISO8601String("-03:30"));
  EXPECT_EQ("1970-01-01 00:00:00.000-03:30", timestamp.ToISO8601String());
}

TEST(Timestamp, TextWithoutAnOffsetClearsAnEarlierOne) {
  Timestamp timestamp;
  ASSERT_NE(0U, timestamp.FromISO8601String(WithDate("+05:30").c_str()));
  EXPECT_EQ(23U, timestamp.FromISO8601String(DATE));
  EXPECT_EQ(DATE, timestamp.ToISO8601String());
}

TEST(Timestamp, TextThatDoesNotBeginWithADateReturns0AndResetsTheObject) {
  for (const char* text : {"", " 2024-03-05 09:07:03.042", "2024-02-30 09:07:03.042", "yesterday"}) {
    Timestamp timestamp;
    ASSERT_NE(0U, timestamp.FromISO8601String(WithDate("+05:30").c_str()));
    EXPECT_EQ(0U, timestamp.FromISO8601String(text)) << text;
    EXPECT_EQ("1970-01-01 00:00:00.000", timestamp.ToISO8601String()) << text;
  }
}

TEST(Timestamp, ReadsNullAsAnEmptyText) {
  Timestamp timestamp;
  ASSERT_NE(0U, timestamp.FromISO8601String(DATE));
  EXPECT_EQ(0U, timestamp.FromISO8601String(nullptr));
  EXPECT_EQ("1970-01-01 00:00:00.000", timestamp.ToISO8601String());
}

TEST(Timestamp, PadsNumbersWithZerosAndTruncatesNone) {
  EXPECT_EQ("0999-01-02 03:04:05.007", ReadAndPrint("0999-01-02 03:04:05.007"));
  EXPECT_EQ("12345-01-02 03:04:05.007", ReadAndPrint("12345-01-02 03:04:05.007"));
}

TEST(Timestamp, CopiesTheOffset) {
  Timestamp timestamp;
  ASSERT_NE(0U, timestamp.FromISO8601String(WithDate("-05:30").c_str()));
  Timestamp copy;
  copy = timestamp;
  EXPECT_EQ(WithDate("-05:30"), copy.ToISO8601String());
}

TEST(Timestamp, AppendsItsTextToTheExistingText) {
  Timestamp timestamp;
  ASSERT_NE(0U, timestamp.FromISO8601String(WithDate("+01:00").c_str()));
  std::string out = "at ";
  timestamp.AppendISO8601String(out);
  EXPECT_EQ("at " + WithDate("+01:00"), out);
}

TEST(Timestamp, NowIsThePresentInstant) {
  const DateTime before = DateTime::Now();
  Timestamp now;
  now.SetToNowLocal();
  const DateTime after = DateTime::Now();
  EXPECT_GE((now - before).GetTotalMilliseconds(), 0);
  EXPECT_GE((after - now).GetTotalMilliseconds(), 0);
}

TEST(Timestamp, NowShowsTheOffsetEastOfUtc) {
  SetTimeZone("XXX-5:30");
  Timestamp now;
  now.SetToNowLocal();
  EXPECT_EQ("+05:30", now.ToISO8601String().substr(23));
}

TEST(Timestamp, NowShowsTheOffsetWestOfUtc) {
  SetTimeZone("XXX0:30");
  Timestamp now;
  now.SetToNowLocal();
  EXPECT_EQ("-00:30", now.ToISO8601String().substr(23));
}

TEST(Timestamp, NowAddsBothPartsOfTheOffset) {
  SetTimeZone("XXX-1YYY-3,0/0,366/23");
  Timestamp now;
  now.SetToNowLocal();
  EXPECT_EQ("+03:00", now.ToISO8601String().substr(23));
}

TEST(Timestamp, NowInUtcClearsAnEarlierOffset) {
  SetTimeZone("UTC0");
  Timestamp now;
  ASSERT_NE(0U, now.FromISO8601String(WithDate("+05:30").c_str()));
  now.SetToNowLocal();
  EXPECT_EQ(23U, now.ToISO8601String().size());
}

RC_GTEST_PROP(Timestamp, ReadsBackEveryTextThatItPrints, ()) {
  Timestamp timestamp;
  timestamp.SetToNowLocal();
  const auto number = [](int end) { return *rc::gen::inRange(0, end); };
  std::string text = DateTime(number(2'000'000'000) + number(1000) / 1000.0).ToString();
  text += *rc::gen::element('+', '-');
  YLog::AppendUnsignedLongDecimalToString(text, static_cast<unsigned long>(number(15)), 2) += ':';
  YLog::AppendUnsignedLongDecimalToString(text, static_cast<unsigned long>(number(59) + 1), 2);

  RC_ASSERT(timestamp.FromISO8601String(text.c_str()) == text.size());
  RC_ASSERT(timestamp.ToISO8601String() == text);
}

TEST(AppendUnsignedLongDecimalToString, PadsWithZerosToTheMinimumNumberOfDigits) {
  std::string out = "x";
  YLog::AppendUnsignedLongDecimalToString(out, 7, 3) += ',';
  YLog::AppendUnsignedLongDecimalToString(out, 0, 0) += ',';
  YLog::AppendUnsignedLongDecimalToString(out, 1234, 2) += ',';
  YLog::AppendUnsignedLongDecimalToString(out, 18446744073709551615UL, 25);
  EXPECT_EQ("x007,0,1234,0000018446744073709551615", out);
}

TEST(AppendUnsignedLongDecimalToString, ReturnsTheTextThatItAppendsTo) {
  std::string out;
  EXPECT_EQ(&out, &YLog::AppendUnsignedLongDecimalToString(out, 1, 1));
}

}  // namespace

#include <YDataType/DateTime.h>
#include <rapidcheck/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <string>

#include "support/FakeClock.h"
#include "support/TimeZone.h"

namespace {

using Support::FakeClock;
using Support::SetTimeZone;

using namespace std::chrono_literals;
using YDataType::DateTime;

constexpr double SECONDS_A_DAY = 86400.0;

DateTime Parse(const char* text) {
  DateTime dateTime(0.0);
  EXPECT_GT(dateTime.FromString(text), 0u) << text;
  return dateTime;
}

std::chrono::sys_time<std::chrono::milliseconds> At(std::chrono::sys_days day,
                                                    std::chrono::milliseconds timeOfDay) {
  return day + timeOfDay;
}

TEST(DateTime, BeginsIn1970WithoutAnOffset) {
  const DateTime epoch(0.0);
  EXPECT_EQ(epoch.ToString(), "1970-01-01 00:00:00.000");
  EXPECT_EQ(epoch.GetStandardOffset(), 0);
  EXPECT_EQ(epoch.GetDaylightSavingOffset(), 0);
}

TEST(DateTime, CountsSecondsToTheNearestMillisecond) {
  EXPECT_EQ(DateTime(1.5).ToString(), "1970-01-01 00:00:01.500");
  EXPECT_EQ(DateTime(-0.001).ToString(), "1969-12-31 23:59:59.999");
  EXPECT_EQ(DateTime(0.9996).ToString(), "1970-01-01 00:00:01.000");
  EXPECT_EQ(DateTime(951782400.0).ToString(), "2000-02-29 00:00:00.000");
}

TEST(DateTime, IsLimitedToTheFirstAndLastInstantOfItsYears) {
  constexpr double INFINITE = std::numeric_limits<double>::infinity();
  constexpr double LARGEST = std::numeric_limits<double>::max();
  for (const double early : {-62135596800.0, -62135596800.001, -1e18, -LARGEST, -INFINITE}) {
    EXPECT_EQ(DateTime(early).ToString(), "0001-01-01 00:00:00.000") << early;
  }
  for (const double late : {253402300799.999, 253402300800.0, 1e18, LARGEST, INFINITE}) {
    EXPECT_EQ(DateTime(late).ToString(), "9999-12-31 23:59:59.999") << late;
  }
}

TEST(DateTime, TreatsNotANumberAsZero) {
  EXPECT_EQ(DateTime(std::numeric_limits<double>::quiet_NaN()), DateTime(0.0));
}

TEST(DateTime, KnowsTheLeapYears) {
  EXPECT_EQ(Parse("2000-02-29 00:00:00.000").GetDay(), 29);
  EXPECT_EQ(Parse("2024-02-29 00:00:00.000").GetDay(), 29);
  EXPECT_EQ(Parse("0000-02-29 00:00:00.000").GetDay(), 29);
  DateTime dateTime(0.0);
  for (const char* text : {"1900-02-29 00:00:00.000", "2023-02-29 00:00:00.000", "2100-02-29 00:00:00.000"}) {
    EXPECT_EQ(dateTime.FromString(text), 0u) << text;
  }
}

TEST(DateTime, ReadsEachFieldOfItsForm) {
  DateTime dateTime(0.0);
  EXPECT_EQ(dateTime.FromString("2024-03-05 09:07:03.042"), 23u);
  EXPECT_EQ(dateTime.GetYear(), 2024);
  EXPECT_EQ(dateTime.GetMonth(), 3);
  EXPECT_EQ(dateTime.GetDay(), 5);
  EXPECT_EQ(dateTime.GetHour(), 9);
  EXPECT_EQ(dateTime.GetMinute(), 7);
  EXPECT_EQ(dateTime.GetSecond(), 3);
  EXPECT_EQ(dateTime.GetMillisecond(), 42);
}

TEST(DateTime, ReadsYearsOfFourToNineDigits) {
  EXPECT_EQ(Parse("0999-12-31 23:59:59.999").ToString(), "0999-12-31 23:59:59.999");
  EXPECT_EQ(Parse("12024-03-05 00:00:00.000").ToString(), "12024-03-05 00:00:00.000");
  EXPECT_EQ(Parse("999999999-12-31 00:00:00.000").GetYear(), 999999999);
  DateTime dateTime(0.0);
  EXPECT_EQ(dateTime.FromString("999-12-31 00:00:00.000"), 0u);
  EXPECT_EQ(dateTime.FromString("1000000000-12-31 00:00:00.000"), 0u);
}

TEST(DateTime, StopsReadingAfterTheMilliseconds) {
  DateTime dateTime(0.0);
  EXPECT_EQ(dateTime.FromString("2024-03-05 09:07:03.042+01:00"), 23u);
  EXPECT_EQ(dateTime.FromString("2024-03-05 09:07:03.042123"), 23u);
  EXPECT_EQ(dateTime.FromString("12024-03-05 09:07:03.042 text"), 24u);
}

TEST(DateTime, RefusesOtherFormsAndStaysUnchanged) {
  const char* const TEXTS[] = {
      "",
      "2024",
      "2024-03-05",
      "2024-03-05 09:07:03",
      "2024-03-05 09:07:03.04",
      "2024-03-05 09:07:03,042",
      "2024-03-05T09:07:03.042",
      "2024-3-05 09:07:03.042",
      "2024-03-5 09:07:03.042",
      "2024-03-05 9:07:03.042",
      "2024/03/05 09:07:03.042",
      " 2024-03-05 09:07:03.042",
      "-2024-03-05 09:07:03.042",
      "+2024-03-05 09:07:03.042",
      "2024-03-05  9:07:03.042",
      "2024-03-05 09:07:-3.042",
  };
  DateTime dateTime(1.0);
  for (const char* text : TEXTS) EXPECT_EQ(dateTime.FromString(text), 0u) << text;
  EXPECT_EQ(dateTime.FromString(nullptr), 0u);
  EXPECT_EQ(dateTime, DateTime(1.0));
}

TEST(DateTime, RefusesDatesThatDoNotExistAndStaysUnchanged) {
  const char* const TEXTS[] = {
      "2024-00-05 09:07:03.042", "2024-13-05 09:07:03.042", "2024-03-00 09:07:03.042",
      "2024-03-32 09:07:03.042", "2024-04-31 09:07:03.042", "2024-03-05 24:00:00.000",
      "2024-03-05 09:60:03.042", "2024-03-05 09:07:60.042",
  };
  DateTime dateTime(1.0);
  for (const char* text : TEXTS) EXPECT_EQ(dateTime.FromString(text), 0u) << text;
  EXPECT_EQ(dateTime, DateTime(1.0));
}

TEST(DateTime, HasNoOffsetAfterReading) {
  SetTimeZone("Asia/Kolkata");
  const FakeClock clock(At(std::chrono::year{2024} / 3 / 5, 0ms));
  DateTime dateTime = DateTime::Now();
  ASSERT_EQ(dateTime.GetStandardOffset(), 330);
  EXPECT_EQ(dateTime.FromString("2024-03-05 09:07:03.042"), 23u);
  EXPECT_EQ(dateTime.GetStandardOffset(), 0);
  EXPECT_EQ(dateTime, Parse("2024-03-05 09:07:03.042"));
}

TEST(DateTime, SubtractsAsInstantsInUtc) {
  SetTimeZone("Asia/Kolkata");
  FakeClock clock(At(std::chrono::year{2024} / 3 / 5, 12h + 5ms));
  const DateTime earlier = DateTime::Now();
  clock.Advance(1500ms);
  const DateTime later = DateTime::NowUTC();
  EXPECT_EQ(earlier.ToString(), "2024-03-05 17:30:00.005");
  EXPECT_EQ(later.ToString(), "2024-03-05 12:00:01.505");
  EXPECT_EQ((later - earlier).GetTotalMilliseconds(), 1500);
  EXPECT_EQ((earlier - later).GetTotalMilliseconds(), -1500);
}

TEST(DateTime, SubtractsToTheElapsedTimeWhenTheClocksGoBack) {
  SetTimeZone("Europe/Berlin");
  FakeClock clock(At(std::chrono::year{2024} / 10 / 27, 0h + 30min));
  const DateTime summer = DateTime::Now();
  clock.Advance(1h);
  const DateTime winter = DateTime::Now();
  EXPECT_EQ(summer.ToString(), winter.ToString());
  EXPECT_NE(summer, winter);
  EXPECT_EQ((winter - summer).GetTotalSeconds(), 3600);
}

TEST(DateTime, SaturatesWhenADifferenceDoesNotFit) {
  const DateTime last = Parse("999999999-12-31 23:59:59.999");
  const long long difference = (last - DateTime(0.0)).GetTotalMilliseconds();
  EXPECT_GT(difference, std::numeric_limits<long long>::max() - 10'000);
  EXPECT_LT((DateTime(0.0) - last).GetTotalMilliseconds(), std::numeric_limits<long long>::min() + 10'000);
}

TEST(DateTime, UsesTheSystemsTimeUnlessTheClockIsReplaced) {
  const DateTime before(
      std::floor(std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count()));
  const long long passed = (DateTime::NowUTC() - before).GetTotalMilliseconds();
  EXPECT_GE(passed, 0);
  EXPECT_LT(passed, 60'000);
}

TEST(DateTime, ShowsInstantsBefore1970) {
  SetTimeZone("UTC");
  const FakeClock clock(At(std::chrono::year{1969} / 12 / 31, 23h + 59min + 59s + 1ms));
  EXPECT_EQ(DateTime::Now().ToString(), "1969-12-31 23:59:59.001");
  EXPECT_EQ(DateTime::NowUTC(), DateTime::Now());
}

// The calendar of the standard library is the reference.
RC_GTEST_PROP(DateTime, AgreesWithTheCalendarForEveryDay, ()) {
  const int day = *rc::gen::inRange(-719162, 2932897);
  const std::chrono::year_month_day expected{std::chrono::sys_days(std::chrono::days(day))};
  const DateTime dateTime(day * SECONDS_A_DAY);
  RC_ASSERT(dateTime.GetYear() == static_cast<int>(expected.year()));
  RC_ASSERT(static_cast<unsigned>(dateTime.GetMonth()) == static_cast<unsigned>(expected.month()));
  RC_ASSERT(static_cast<unsigned>(dateTime.GetDay()) == static_cast<unsigned>(expected.day()));
  RC_ASSERT((dateTime - DateTime(0.0)).GetTotalMilliseconds() == day * 86'400'000LL);
}

RC_GTEST_PROP(DateTime, ReadsBackWhatItPrints, ()) {
  const auto milliseconds = *rc::gen::inRange<long long>(-62135596800000, 253402300800000);
  const DateTime printed(static_cast<double>(milliseconds) / 1000.0);
  DateTime read(0.0);
  RC_ASSERT(read.FromString(printed.ToString().c_str()) == 23u);
  RC_ASSERT(read == printed);
  RC_ASSERT((read - DateTime(0.0)).GetTotalMilliseconds() == milliseconds);
}

RC_GTEST_PROP(DateTime, ReadsAnyTextSafely, (const std::string& text)) {
  DateTime dateTime(0.0);
  RC_ASSERT(dateTime.FromString(text.c_str()) <= text.size());
}

}  // namespace

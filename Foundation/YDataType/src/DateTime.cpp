#include <YDataType/DateTime.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>

#include "CivilTime.h"
#include "Clock.h"
#include "LocalTime.h"

namespace YDataType {

namespace {

using std::chrono::milliseconds;
using std::chrono::sys_days;
using std::chrono::year_month_day;

/// The calendar of the standard library ends before our years do, but 400 years are as long as any others.
constexpr int YEARS_OF_A_CYCLE = 400;
constexpr long long DAYS_OF_A_CYCLE = 146097;

constexpr year_month_day ToFirstCycle(int year, int month, int day) {
  return {std::chrono::year(year % YEARS_OF_A_CYCLE), std::chrono::month(static_cast<unsigned>(month)),
          std::chrono::day(static_cast<unsigned>(day))};
}

/// Days from 1970-01-01.
constexpr long long GetDays(int year, int month, int day) {
  const sys_days inFirstCycle = ToFirstCycle(year, month, day);
  return inFirstCycle.time_since_epoch().count() + year / YEARS_OF_A_CYCLE * DAYS_OF_A_CYCLE;
}

static_assert(GetDays(1970, 1, 1) == 0 && GetDays(2000, 1, 1) == 10957);

milliseconds ToMilliseconds(double seconds) noexcept {
  constexpr milliseconds FIRST = std::chrono::days(GetDays(1, 1, 1));
  constexpr milliseconds LAST = std::chrono::days(GetDays(10000, 1, 1)) - milliseconds(1);
  if (std::isnan(seconds)) return milliseconds(0);
  // Clamped as a floating-point number first: a value beyond the limits may not fit an integer.
  const double count = std::clamp(seconds * 1000.0, FIRST.count() - 1.0, LAST.count() + 1.0);
  return std::clamp(milliseconds(std::llround(count)), FIRST, LAST);
}

CivilTime ToCivilTime(milliseconds since1970) noexcept {
  const std::chrono::sys_time<milliseconds> instant(since1970);
  const auto midnight = std::chrono::floor<std::chrono::days>(instant);
  const year_month_day date(midnight);
  const std::chrono::hh_mm_ss<milliseconds> time(instant - midnight);
  return {.year = int{date.year()},
          .month = static_cast<int>(unsigned{date.month()}),
          .day = static_cast<int>(unsigned{date.day()}),
          .hour = static_cast<int>(time.hours().count()),
          .minute = static_cast<int>(time.minutes().count()),
          .second = static_cast<int>(time.seconds().count()),
          .millisecond = static_cast<int>(time.subseconds().count()),
          .standardOffset = 0,
          .daylightSavingOffset = 0};
}

bool ReadNumber(const char*& text, int minimumDigits, int maximumDigits, int& number) noexcept {
  number = 0;
  int digits = 0;
  for (; digits < maximumDigits && *text >= '0' && *text <= '9'; ++digits)
    number = number * 10 + (*text++ - '0');
  return digits >= minimumDigits;
}

bool ReadCharacter(const char*& text, char expected) noexcept {
  if (*text != expected) return false;
  ++text;
  return true;
}

bool ReadFields(const char*& text, CivilTime& fields) noexcept {
  return ReadNumber(text, 4, 9, fields.year) && ReadCharacter(text, '-') &&
         ReadNumber(text, 2, 2, fields.month) && ReadCharacter(text, '-') &&
         ReadNumber(text, 2, 2, fields.day) && ReadCharacter(text, ' ') &&
         ReadNumber(text, 2, 2, fields.hour) && ReadCharacter(text, ':') &&
         ReadNumber(text, 2, 2, fields.minute) && ReadCharacter(text, ':') &&
         ReadNumber(text, 2, 2, fields.second) && ReadCharacter(text, '.') &&
         ReadNumber(text, 3, 3, fields.millisecond);
}

bool Exists(const CivilTime& fields) noexcept {
  return ToFirstCycle(fields.year, fields.month, fields.day).ok() && fields.hour <= 23 &&
         fields.minute <= 59 && fields.second <= 59;
}

}  // namespace

DateTime::DateTime(double seconds) noexcept : DateTime(ToCivilTime(ToMilliseconds(seconds))) {}

DateTime::DateTime(const CivilTime& time) noexcept
    : mYear(time.year),
      mMillisecond(static_cast<short>(time.millisecond)),
      mMonth(static_cast<signed char>(time.month)),
      mDay(static_cast<signed char>(time.day)),
      mHour(static_cast<signed char>(time.hour)),
      mMinute(static_cast<signed char>(time.minute)),
      mSecond(static_cast<signed char>(time.second)),
      mStandardOffset(static_cast<short>(time.standardOffset)),
      mDaylightSavingOffset(static_cast<short>(time.daylightSavingOffset)) {}

DateTime DateTime::Now() {
  const Clock::Instant now = Clock::GetCurrent().Now();
  const auto second = std::chrono::floor<std::chrono::seconds>(now);
  CivilTime time = GetLocalTime(second);
  time.millisecond = static_cast<int>((now - second).count());
  return DateTime(time);
}

DateTime DateTime::NowUTC() noexcept {
  return DateTime(ToCivilTime(Clock::GetCurrent().Now().time_since_epoch()));
}

YBase::ReturnString DateTime::ToString() const {
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", mYear, mMonth, mDay, mHour, mMinute,
                mSecond, mMillisecond);
  return text;
}

unsigned DateTime::FromString(const char* text) noexcept {
  if (text == nullptr) return 0;
  const char* end = text;
  CivilTime fields{};
  if (!ReadFields(end, fields) || !Exists(fields)) return 0;
  *this = DateTime(fields);
  return static_cast<unsigned>(end - text);
}

TimeSpan operator-(const DateTime& later, const DateTime& earlier) noexcept {
  // A thousand million years are more milliseconds than 64 bits hold, but not more seconds.
  constexpr long long LIMIT = std::numeric_limits<long long>::max() / 1000 - 1;
  const long long seconds = std::clamp(later.GetUTCSeconds() - earlier.GetUTCSeconds(), -LIMIT, LIMIT);
  return TimeSpan(seconds * 1000 + later.mMillisecond - earlier.mMillisecond);
}

long long DateTime::GetUTCSeconds() const noexcept {
  const long long timeOfDay = mHour * 3600LL + mMinute * 60LL + mSecond;
  const long long offset = (mStandardOffset + mDaylightSavingOffset) * 60LL;
  return GetDays(mYear, mMonth, mDay) * 86400 + timeOfDay - offset;
}

}  // namespace YDataType

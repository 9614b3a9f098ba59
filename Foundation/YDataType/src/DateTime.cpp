#include <YDataType/DateTime.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>

#include "Clock.h"
#include "LocalTime.h"

namespace YDataType {

namespace {

constexpr long long SECONDS_A_DAY = 86400;
constexpr long long MILLISECONDS_A_DAY = 1000 * SECONDS_A_DAY;

constexpr long long FloorDivide(long long dividend, long long divisor) {
  return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

constexpr bool IsLeapYear(long long year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int GetDaysInMonth(long long year, int month) {
  constexpr int DAYS[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && IsLeapYear(year) ? 29 : DAYS[month - 1];
}

/// Days from 1970-01-01 to the first of January; negative for earlier years.
constexpr long long GetDaysBeforeYear(long long year) {
  constexpr long long DAYS_BEFORE_1970 = 719162;
  const long long before = year - 1;
  const long long leapDays = FloorDivide(before, 4) - FloorDivide(before, 100) + FloorDivide(before, 400);
  return 365 * before + leapDays - DAYS_BEFORE_1970;
}

static_assert(GetDaysBeforeYear(1970) == 0 && GetDaysBeforeYear(2000) == 10957);

/// Days from 1970-01-01.
constexpr long long GetDays(long long year, int month, int day) {
  long long days = GetDaysBeforeYear(year) + day - 1;
  for (int earlier = 1; earlier < month; ++earlier) days += GetDaysInMonth(year, earlier);
  return days;
}

/// The year that a day counted from 1970-01-01 lies in.
long long GetYearOfDay(long long day) {
  // 400 years have 146097 days wherever they begin, so that the estimate is off by one year at most.
  long long year = 1970 + FloorDivide(day * 400, 146097);
  while (GetDaysBeforeYear(year) > day) --year;
  while (GetDaysBeforeYear(year + 1) <= day) ++year;
  return year;
}

long long ToMilliseconds(double seconds) noexcept {
  constexpr long long FIRST = GetDays(1, 1, 1) * MILLISECONDS_A_DAY;
  constexpr long long LAST = GetDays(10000, 1, 1) * MILLISECONDS_A_DAY - 1;
  if (std::isnan(seconds)) return 0;
  // Clamped as a number of seconds first: what is beyond the limits need not fit an integer.
  const double within = std::clamp(seconds, FIRST / 1000.0, (LAST + 1) / 1000.0);
  return std::clamp(std::llround(within * 1000.0), FIRST, LAST);
}

struct Fields {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
  int millisecond;
};

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

bool ReadFields(const char*& text, Fields& fields) noexcept {
  return ReadNumber(text, 4, 9, fields.year) && ReadCharacter(text, '-') &&
         ReadNumber(text, 2, 2, fields.month) && ReadCharacter(text, '-') &&
         ReadNumber(text, 2, 2, fields.day) && ReadCharacter(text, ' ') &&
         ReadNumber(text, 2, 2, fields.hour) && ReadCharacter(text, ':') &&
         ReadNumber(text, 2, 2, fields.minute) && ReadCharacter(text, ':') &&
         ReadNumber(text, 2, 2, fields.second) && ReadCharacter(text, '.') &&
         ReadNumber(text, 3, 3, fields.millisecond);
}

bool Exists(const Fields& fields) noexcept {
  return fields.month >= 1 && fields.month <= 12 && fields.day >= 1 &&
         fields.day <= GetDaysInMonth(fields.year, fields.month) && fields.hour <= 23 &&
         fields.minute <= 59 && fields.second <= 59;
}

}  // namespace

DateTime::DateTime(double seconds) noexcept {
  SetWithoutOffset(ToMilliseconds(seconds));
}

DateTime DateTime::Now() {
  const Clock::Instant now = Clock::GetCurrent().Now();
  const auto second = std::chrono::floor<std::chrono::seconds>(now);
  const LocalTime local = GetLocalTime(second);
  DateTime result;
  result.mYear = local.year;
  result.mMonth = local.month;
  result.mDay = local.day;
  result.mHour = local.hour;
  result.mMinute = local.minute;
  result.mSecond = local.second;
  result.mMillisecond = static_cast<short>((now - second).count());
  result.mStandardOffset = local.standardOffset;
  result.mDaylightSavingOffset = local.daylightSavingOffset;
  return result;
}

DateTime DateTime::NowUTC() noexcept {
  DateTime result;
  result.SetWithoutOffset(Clock::GetCurrent().Now().time_since_epoch().count());
  return result;
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
  Fields fields{};
  if (!ReadFields(end, fields) || !Exists(fields)) return 0;
  DateTime read;
  read.mYear = fields.year;
  read.mMonth = static_cast<signed char>(fields.month);
  read.mDay = static_cast<signed char>(fields.day);
  read.mHour = static_cast<signed char>(fields.hour);
  read.mMinute = static_cast<signed char>(fields.minute);
  read.mSecond = static_cast<signed char>(fields.second);
  read.mMillisecond = static_cast<short>(fields.millisecond);
  *this = read;
  return static_cast<unsigned>(end - text);
}

TimeSpan operator-(const DateTime& later, const DateTime& earlier) noexcept {
  // A thousand million years are more milliseconds than 64 bits hold, but not more seconds.
  constexpr long long LIMIT = std::numeric_limits<long long>::max() / 1000 - 1;
  const long long seconds = std::clamp(later.GetUTCSeconds() - earlier.GetUTCSeconds(), -LIMIT, LIMIT);
  return TimeSpan(seconds * 1000 + later.mMillisecond - earlier.mMillisecond);
}

void DateTime::SetWithoutOffset(long long milliseconds) noexcept {
  const long long days = FloorDivide(milliseconds, MILLISECONDS_A_DAY);
  const auto timeOfDay = static_cast<int>(milliseconds - days * MILLISECONDS_A_DAY);
  const long long year = GetYearOfDay(days);
  auto day = static_cast<int>(days - GetDaysBeforeYear(year));
  int month = 1;
  for (; day >= GetDaysInMonth(year, month); ++month) day -= GetDaysInMonth(year, month);
  mYear = static_cast<int>(year);
  mMonth = static_cast<signed char>(month);
  mDay = static_cast<signed char>(day + 1);
  mHour = static_cast<signed char>(timeOfDay / 3600000);
  mMinute = static_cast<signed char>(timeOfDay / 60000 % 60);
  mSecond = static_cast<signed char>(timeOfDay / 1000 % 60);
  mMillisecond = static_cast<short>(timeOfDay % 1000);
  mStandardOffset = 0;
  mDaylightSavingOffset = 0;
}

long long DateTime::GetUTCSeconds() const noexcept {
  const long long timeOfDay = mHour * 3600LL + mMinute * 60LL + mSecond;
  const long long offset = (mStandardOffset + mDaylightSavingOffset) * 60LL;
  return GetDays(mYear, mMonth, mDay) * SECONDS_A_DAY + timeOfDay - offset;
}

}  // namespace YDataType

#pragma once

#include <YBase/ReturnString.h>
#include <YDataType/Export.h>
#include <YDataType/TimeSpan.h>

namespace YDataType {

struct CivilTime;

/// A calendar date (proleptic Gregorian) and time of day to the millisecond, with the offset from UTC that
/// was in force at that instant.
///
/// A value. Threads: like any value.
class YDATATYPE_EXPORT DateTime {
 public:
  /// `seconds` after 1970-01-01 00:00:00.000, to the nearest millisecond, without an offset. An instant
  /// outside the years 1 to 9999 becomes the nearest limit; NaN counts as 0.
  explicit DateTime(double seconds) noexcept;

  /// The present instant in local time, with the offset that the process's time zone has at that instant.
  static DateTime Now();
  /// The present instant in UTC.
  static DateTime NowUTC() noexcept;

  int GetYear() const noexcept { return mYear; }
  int GetMonth() const noexcept { return mMonth; }              ///< 1 to 12.
  int GetDay() const noexcept { return mDay; }                  ///< 1 to 31.
  int GetHour() const noexcept { return mHour; }                ///< 0 to 23.
  int GetMinute() const noexcept { return mMinute; }            ///< 0 to 59.
  int GetSecond() const noexcept { return mSecond; }            ///< 0 to 59; a leap second shows as 59.
  int GetMillisecond() const noexcept { return mMillisecond; }  ///< 0 to 999.

  /// The two parts of the offset in minutes, positive east of UTC: that of the zone, and what daylight saving
  /// adds. The offset is their sum.
  short GetStandardOffset() const noexcept { return mStandardOffset; }
  short GetDaylightSavingOffset() const noexcept { return mDaylightSavingOffset; }

  /// The text "YYYY-MM-DD HH:MM:SS.mmm", the year with at least four digits. The offset is not shown.
  YBase::ReturnString ToString() const;

  /// Reads the form of `ToString` at the beginning of `text`: a year of four to nine digits, two digits each
  /// for month, day, hour, minute and second, and three for the milliseconds. The date must exist, and the
  /// hour may be up to 23. What is read has no offset.
  ///
  /// Returns the number of characters read. If `text` begins otherwise or is null, returns 0 and leaves the
  /// object unchanged.
  unsigned FromString(const char* text) noexcept;

  /// The time from `earlier` to `later`, as instants in UTC. If 64 bits cannot hold it, the result is near
  /// the limit.
  friend YDATATYPE_EXPORT TimeSpan operator-(const DateTime& later, const DateTime& earlier) noexcept;

  /// Equal in everything that the getters return, including both parts of the offset.
  friend bool operator==(const DateTime&, const DateTime&) noexcept = default;

 private:
  explicit DateTime(const CivilTime& time) noexcept;

  long long GetUTCSeconds() const noexcept;

  int mYear;
  short mMillisecond;
  signed char mMonth;
  signed char mDay;
  signed char mHour;
  signed char mMinute;
  signed char mSecond;
  short mStandardOffset;
  short mDaylightSavingOffset;
};

}  // namespace YDataType

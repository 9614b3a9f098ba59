#pragma once

namespace YDataType {

/// What a calendar and a clock on the wall show, and how far that is from UTC.
struct CivilTime {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
  int millisecond;
  /// In minutes east of UTC; the sum of both is the offset of that instant.
  int standardOffset;
  int daylightSavingOffset;
};

}  // namespace YDataType

#pragma once

#include <chrono>

namespace YDataType {

/// What clocks on the wall show at an instant, and how far that is from UTC.
struct LocalTime {
  int year;
  signed char month;
  signed char day;
  signed char hour;
  signed char minute;
  signed char second;
  /// In minutes east of UTC; the sum of both is the offset of that instant.
  short standardOffset;
  short daylightSavingOffset;
};

/// The local time of an instant in the process's zone, as the C library was last told of it (`tzset`).
///
/// Each thread remembers its last answer, so that all but the first question about a second are cheap.
///
/// Threads: any, also before `main` and while a thread's own objects are destroyed. A fork waits for a
/// thread that is asking the C library, since its lock on the zone would stay taken in the child.
LocalTime GetLocalTime(std::chrono::sys_seconds instant) noexcept;

}  // namespace YDataType

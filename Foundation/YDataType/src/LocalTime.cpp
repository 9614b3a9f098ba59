#include "LocalTime.h"

#include <YBase/NeverDestroyed.h>
#include <YSynch/CriticalSection.h>

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cstdlib>
#include <ctime>

namespace YDataType {

namespace {

/// What the C library shows of the zone. It changes when the host calls `tzset` after a change of `TZ`.
struct Zone {
  long secondsWest;
  const char* standardName;
  const char* daylightSavingName;

  bool operator==(const Zone&) const = default;
};

struct Answer {
  bool given;
  std::chrono::sys_seconds instant;
  Zone zone;
  CivilTime localTime;
};

// Nothing to construct or destroy: threads log while their own thread-local objects are destroyed.
constinit thread_local Answer gsLastAnswer{};

/// Atomic, because threads that do not take our lock may make the C library write these. Relaxed: a late read
/// costs one more computation or, at worst, shows a change of zone one second later.
template <class T>
T LoadRelaxed(T& variable) noexcept {
  return std::atomic_ref<T>(variable).load(std::memory_order_relaxed);
}

Zone GetZone() noexcept {
  return {LoadRelaxed(::timezone), LoadRelaxed(::tzname[0]), LoadRelaxed(::tzname[1])};
}

// Held around the C library's lock on the zone, so that none of our threads holds that during a fork.
constinit YBase::NeverDestroyed<YSynch::CriticalSection> gsZoneLock(YSynch::LOCK_STACK_CATEGORY_CLASS);

std::tm BreakDown(std::chrono::sys_seconds instant) noexcept {
  const std::time_t seconds = instant.time_since_epoch().count();
  std::tm parts{};
  const YSynch::CriticalSection::SmartLock lock(*gsZoneLock);
  [[maybe_unused]] const std::tm* const result = ::localtime_r(&seconds, &parts);
  // It fails only for years that an int cannot hold, which a clock of milliseconds never shows.
  assert(result != nullptr);
  return parts;
}

/// How much of an offset, in minutes, is daylight saving. The standard offset that the C library reports
/// belongs to one era of the zone, and may differ from that of the instant.
int GetDaylightSaving(const std::tm& parts, int offset, long secondsWest) noexcept {
  constexpr int LARGEST_EVER = 120;
  if (parts.tm_isdst <= 0) return 0;
  const long daylightSaving = offset + secondsWest / 60;
  return std::labs(daylightSaving) <= LARGEST_EVER ? static_cast<int>(daylightSaving) : 0;
}

CivilTime ToCivilTime(const std::tm& parts, long secondsWest) noexcept {
  // Some zones of the past had offsets with seconds. Those are part of the time of day, not of the offset.
  const int offset = static_cast<int>(parts.tm_gmtoff / 60);
  const int daylightSaving = GetDaylightSaving(parts, offset, secondsWest);
  return {
      .year = parts.tm_year + 1900,
      .month = parts.tm_mon + 1,
      .day = parts.tm_mday,
      .hour = parts.tm_hour,
      .minute = parts.tm_min,
      // A zone that counts leap seconds shows 60, which our texts cannot represent.
      .second = std::min(parts.tm_sec, 59),
      .millisecond = 0,
      .standardOffset = offset - daylightSaving,
      .daylightSavingOffset = daylightSaving,
  };
}

}  // namespace

CivilTime GetLocalTime(std::chrono::sys_seconds instant) noexcept {
  // The zone is read before the computation: if it changes in between, the result is not mistaken for one of
  // the new zone.
  const Zone zone = GetZone();
  Answer& last = gsLastAnswer;
  if (!last.given || last.instant != instant || last.zone != zone) {
    const std::tm parts = BreakDown(instant);
    last = {true, instant, zone, ToCivilTime(parts, LoadRelaxed(::timezone))};
  }
  return last.localTime;
}

}  // namespace YDataType

#pragma once

#include <chrono>

#include "CivilTime.h"

namespace YDataType {

/// The local time of an instant in the process's zone, as the C library last read it (`tzset`), to the
/// second.
///
/// Each thread remembers its last result, so that all but the first call for a second are cheap.
///
/// Threads: any, also before `main` and while a thread's own objects are destroyed. A fork waits for a thread
/// that is calling the C library, whose lock on the zone would otherwise stay locked in the child.
CivilTime GetLocalTime(std::chrono::sys_seconds instant) noexcept;

}  // namespace YDataType

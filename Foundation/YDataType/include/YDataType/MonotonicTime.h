#pragma once

#include <chrono>

#include <YDataType/Export.h>

namespace YDataType {

/// The time since some moment in the past. It never goes back, whoever sets the wall clock.
///
/// Threads: any.
YDATATYPE_EXPORT std::chrono::nanoseconds GetMonotonicTime() noexcept;

}  // namespace YDataType

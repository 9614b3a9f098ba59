#pragma once

#include <chrono>

namespace YDataType {

/// The time since some moment in the past. It never goes back, even if the wall clock is set.
///
/// Threads: any.
std::chrono::nanoseconds GetMonotonicTime() noexcept;

}  // namespace YDataType

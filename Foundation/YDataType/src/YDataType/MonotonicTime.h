#pragma once

#include <chrono>

namespace YDataType {

/// The time since some moment in the past. It never goes back, whoever sets the wall clock.
///
/// Threads: any.
std::chrono::nanoseconds GetMonotonicTime() noexcept;

}  // namespace YDataType

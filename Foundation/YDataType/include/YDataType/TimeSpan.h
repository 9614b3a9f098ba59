#pragma once

#include <YDataType/Export.h>

namespace YDataType {

/// The time between two instants, in milliseconds; negative if the second is the earlier.
///
/// A value. Threads: like any value.
class YDATATYPE_EXPORT TimeSpan {
 public:
  constexpr explicit TimeSpan(long long milliseconds = 0) noexcept : mMilliseconds(milliseconds) {}

  constexpr long long GetTotalMilliseconds() const noexcept { return mMilliseconds; }

  /// Whole seconds, without the remainder; if 32 bits cannot hold them, the nearest limit.
  int GetTotalSeconds() const noexcept;

  friend constexpr bool operator==(TimeSpan, TimeSpan) noexcept = default;

 private:
  long long mMilliseconds;
};

}  // namespace YDataType

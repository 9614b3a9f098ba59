#pragma once

#include <algorithm>
#include <limits>

namespace YLog {

/// Saturates: a count that wrapped around would be negative and falsify the averages.
/// \pre Neither is negative.
inline int AddCounts(int first, int second) noexcept {
  const long long sum = static_cast<long long>(first) + second;
  return static_cast<int>(std::min<long long>(sum, std::numeric_limits<int>::max()));
}

/// Combines two averages, weighted by their counts, rounded towards zero. 0 if nothing was counted.
/// \pre Neither count is negative, and each is the sum of a few 32-bit numbers at most.
inline long long GetWeightedAverage(long long first, long long firstCount, long long second,
                                    long long secondCount) noexcept {
  // Extreme durations overflow 64 bits when multiplied; the average itself lies between the two.
  __extension__ using Wide = __int128;
  const long long count = firstCount + secondCount;
  if (count == 0) return 0;
  const Wide sum = static_cast<Wide>(first) * firstCount + static_cast<Wide>(second) * secondCount;
  return static_cast<long long>(sum / count);
}

}  // namespace YLog

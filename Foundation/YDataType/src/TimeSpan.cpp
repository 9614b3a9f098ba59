#include <YDataType/TimeSpan.h>

#include <algorithm>
#include <limits>

namespace YDataType {

int TimeSpan::GetTotalSeconds() const noexcept {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<long long>(mMilliseconds / 1000, Limits::min(), Limits::max()));
}

}  // namespace YDataType

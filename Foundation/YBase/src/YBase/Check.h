#pragma once

#include <exception>

namespace YBase {

/// Ends the process unless a call that handles a lock, or the handlers of forks, succeeded: nothing is safe
/// after that.
inline void Check(int error) noexcept {
  if (error != 0) std::terminate();
}

}  // namespace YBase

#pragma once

#include <exception>

namespace YSynch {

/// Ends the process unless a call that handles a lock succeeded: nothing is safe behind a lock that failed.
inline void Check(int error) noexcept {
  if (error != 0) std::terminate();
}

}  // namespace YSynch

#pragma once

#include <cerrno>

namespace YFileSystem {

/// Makes a call again as long as a signal interrupts it.
template <class Call>
auto Uninterrupted(Call call) noexcept {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace YFileSystem

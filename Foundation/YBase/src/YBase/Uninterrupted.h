#pragma once

#include <cerrno>

namespace YBase {

/// The result of a system call that is repeated as long as a signal interrupts it.
template <class Call>
auto Uninterrupted(Call call) noexcept {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace YBase

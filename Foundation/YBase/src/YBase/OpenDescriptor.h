#pragma once

#include <sys/types.h>

namespace YBase {

/// The system's `open`, but never standard input, output or error of a host that has closed these.
///
/// Failure: as the system's: -1 is returned, and `errno` says why.
int OpenDescriptor(const char* path, int flags, mode_t mode = 0) noexcept;

}  // namespace YBase

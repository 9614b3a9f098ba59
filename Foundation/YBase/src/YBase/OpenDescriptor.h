#pragma once

#include <sys/types.h>

namespace YBase {

/// The system's `open`, except that the descriptor never becomes the standard input, output or error of a
/// host that has closed these.
///
/// Failure: like the system's: returns -1 and sets `errno`.
int OpenDescriptor(const char* path, int flags, mode_t mode = 0) noexcept;

}  // namespace YBase

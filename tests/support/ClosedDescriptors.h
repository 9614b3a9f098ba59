#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace Support {

/// Every way to close some of standard input, output and error: bit 0 for input, and so on.
inline constexpr int CLOSED_IN_ANY_WAY[] = {1, 2, 3, 4, 5, 6, 7};

inline bool IsClosed(int descriptor) {
  return fcntl(descriptor, F_GETFD) < 0 && errno == EBADF;
}

inline void CloseDescriptors(int closed) {
  for (int descriptor = 0; descriptor < 3; ++descriptor) {
    if ((closed & (1 << descriptor)) != 0) close(descriptor);
  }
}

/// Writes a text to each of standard input, output and error that should be closed, and reads from it.
/// Returns the number of those that allow either.
inline int UseClosed(int closed) {
  int taken = 0;
  for (int descriptor = 0; descriptor < 3; ++descriptor) {
    if ((closed & (1 << descriptor)) == 0) continue;
    char byte;
    const bool isWritten = write(descriptor, "foreign\n", 8) >= 0;
    if (isWritten || read(descriptor, &byte, 1) >= 0) ++taken;
  }
  return taken;
}

}  // namespace Support

#include <YBase/CancellationGuard.h>
#include <YBase/OpenDescriptor.h>
#include <YBase/StandardDescriptorsGuard.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "HighDescriptor.h"

namespace YBase {

int MakeHigh(int descriptor) noexcept {
  if (descriptor < 0 || descriptor >= FIRST_HIGH_DESCRIPTOR) return descriptor;
  const int high = ::fcntl(descriptor, F_DUPFD_CLOEXEC, FIRST_HIGH_DESCRIPTOR);
  const int error = errno;
  ::close(descriptor);
  errno = error;
  return high;
}

int OpenDescriptor(const char* path, int flags, mode_t mode) noexcept {
  const CancellationGuard cancellationGuard;
  const StandardDescriptorsGuard guard;
  // Another thread may have closed a standard descriptor since the guard checked.
  return MakeHigh(::open(path, flags, mode));
}

}  // namespace YBase

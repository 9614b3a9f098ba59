#include <YBase/CancellationGuard.h>
#include <YBase/Check.h>
#include <YBase/StandardDescriptorsGuard.h>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "HighDescriptor.h"
#include "Platform.h"

namespace YBase {
namespace {

constinit pthread_mutex_t gsMutex = PTHREAD_MUTEX_INITIALIZER;
// All guards share the numbers that are occupied, so that the end of one does not expose another.
constinit unsigned gsGuardCount = 0;
constinit bool gsbIsTaken[FIRST_HIGH_DESCRIPTOR]{};

void Lock() noexcept {
  Check(pthread_mutex_lock(&gsMutex));
}
void Unlock() noexcept {
  Check(pthread_mutex_unlock(&gsMutex));
}

bool IsFree(int descriptor) noexcept {
  return ::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF;
}

bool IsAnyFree() noexcept {
  for (int descriptor = 0; descriptor != FIRST_HIGH_DESCRIPTOR; ++descriptor) {
    if (IsFree(descriptor)) return true;
  }
  return false;
}

void TakeFreeOnes() noexcept {
  if (!IsAnyFree()) return;
  // The system gives out the lowest free number.
  int descriptor;
  while ((descriptor = Platform::OpenPlaceholder()) >= 0 && descriptor < FIRST_HIGH_DESCRIPTOR) {
    gsbIsTaken[descriptor] = true;
  }
  if (descriptor >= 0) ::close(descriptor);
}

/// The host may have replaced a placeholder by something of its own. It may still do so between the check and
/// the close, which no system call can prevent.
void GiveBackThoseTaken() noexcept {
  for (int descriptor = 0; descriptor != FIRST_HIGH_DESCRIPTOR; ++descriptor) {
    if (std::exchange(gsbIsTaken[descriptor], false) && Platform::IsPlaceholder(descriptor)) {
      ::close(descriptor);
    }
  }
}

void FinishInChild() noexcept {
  const CancellationGuard cancellationGuard;
  gsGuardCount = 0;
  GiveBackThoseTaken();
  Unlock();
}

// A fork runs the handlers in the reverse order of their registration. This lock is taken by threads that
// hold any other lock of the library, the `LookupLock` as well, so it must be the last that a fork takes.
[[gnu::constructor(101)]] void RegisterHandlers() noexcept {
  Check(pthread_atfork(Lock, Unlock, FinishInChild));
}

}  // namespace

StandardDescriptorsGuard::StandardDescriptorsGuard() noexcept {
  const int error = errno;
  const CancellationGuard cancellationGuard;
  Lock();
  ++gsGuardCount;
  TakeFreeOnes();
  Unlock();
  errno = error;
}

StandardDescriptorsGuard::~StandardDescriptorsGuard() {
  const int error = errno;
  const CancellationGuard cancellationGuard;
  Lock();
  if (--gsGuardCount == 0) GiveBackThoseTaken();
  Unlock();
  errno = error;
}

}  // namespace YBase

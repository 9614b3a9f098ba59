#include <dlfcn.h>
#include <fcntl.h>
#include <mach-o/dyld.h>
#include <pthread.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdint>
#include <cstring>

#include "Platform.h"

namespace YBase::Platform {

unsigned long GetThreadID() noexcept {
  std::uint64_t id = 0;
  ::pthread_threadid_np(nullptr, &id);
  return id;
}

std::string GetExecutablePath() {
  std::string path(1024, '\0');
  auto size = static_cast<std::uint32_t>(path.size());
  if (::_NSGetExecutablePath(path.data(), &size) != 0) {
    // The buffer is too short; `size` is now the size that is needed.
    path.assign(size, '\0');
    if (::_NSGetExecutablePath(path.data(), &size) != 0) return {};
  }
  path.resize(std::strlen(path.c_str()));
  return path;
}

bool IsInOwnImage(std::uintptr_t address) noexcept {
  Dl_info here;
  Dl_info there;
  return ::dladdr(reinterpret_cast<const void*>(&IsInOwnImage), &here) != 0 &&
         ::dladdr(reinterpret_cast<const void*>(address), &there) != 0 && here.dli_fbase == there.dli_fbase;
}

void ConsumePendingSignal(int signalNumber) noexcept {
  // There is no wait with a time limit here, so whether the signal is pending is checked first.
  sigset_t signals;
  ::sigpending(&signals);
  if (!sigismember(&signals, signalNumber)) return;
  sigemptyset(&signals);
  sigaddset(&signals, signalNumber);
  int taken;
  ::sigwait(&signals, &taken);
}

int OpenPlaceholder() noexcept {
  return ::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

bool IsPlaceholder(int descriptor) noexcept {
  struct stat root;
  struct stat status;
  return ::stat("/", &root) == 0 && ::fstat(descriptor, &status) == 0 && status.st_dev == root.st_dev &&
         status.st_ino == root.st_ino;
}

}  // namespace YBase::Platform

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>

#include "Platform.h"

namespace YBase::Platform {

unsigned long GetThreadID() noexcept {
  return static_cast<unsigned long>(::syscall(SYS_gettid));
}

std::string GetExecutablePath() {
  // A path that fills the buffer may have been cut, and no limit of the system bounds its length.
  for (std::string path(256, '\0');; path.resize(path.size() * 2)) {
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    if (length < 0) return {};
    if (static_cast<std::size_t>(length) == path.size()) continue;
    path.resize(static_cast<std::size_t>(length));
    return path;
  }
}

void ConsumePendingSignal(int signalNumber) noexcept {
  sigset_t signals;
  ::sigemptyset(&signals);
  ::sigaddset(&signals, signalNumber);
  constexpr timespec NO_TIME{};
  while (::sigtimedwait(&signals, nullptr, &NO_TIME) < 0 && errno == EINTR) {
  }
}

}  // namespace YBase::Platform

#include "support/FileLock.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "support/ReadFile.h"

namespace Support {

namespace {

bool HasEnded(pid_t child) {
  siginfo_t info{};
  // WNOWAIT leaves the child to be reaped later.
  return waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) != 0 || info.si_pid != 0;
}

}  // namespace

bool IsFree(const std::filesystem::path& path) {
  // Not for reading: the owner may not read an incomplete copy of a log unless it is root.
  const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) throw std::system_error(errno, std::generic_category(), "open " + path.string());
  const int result = flock(descriptor, LOCK_EX | LOCK_NB);
  const int error = errno;
  close(descriptor);
  if (result != 0 && error != EWOULDBLOCK) throw std::system_error(error, std::generic_category(), "flock");
  return result == 0;
}

bool WaitsForLock(pid_t child) {
  const std::string process = " " + std::to_string(child) + " ";
  for (; !HasEnded(child); sched_yield()) {
    // Such as "7: -> FLOCK  ADVISORY  WRITE 1234 fe:00:5678 0 EOF".
    for (const std::string& line : Lines(ReadFile("/proc/locks"))) {
      if (line.find("-> FLOCK") != std::string::npos && line.find(process) != std::string::npos) return true;
    }
  }
  return false;
}

}  // namespace Support

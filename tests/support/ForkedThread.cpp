#include "support/ForkedThread.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace Support {

pid_t StartChild(const std::function<bool()>& work) {
  const pid_t child = fork();
  if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (child != 0) return child;
  alarm(60);
  bool succeeded = false;
  std::thread([&] { succeeded = work(); }).join();
  _exit(succeeded ? 0 : 1);
}

bool SucceededChild(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "waitpid");
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace Support

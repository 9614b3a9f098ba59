#include "support/ChildProcess.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <system_error>
#include <utility>

namespace Support {

namespace {

[[noreturn]] void RunAndExit(const std::function<int()>& work) {
  int status = 99;
  try {
    status = work();
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "child process: %s\n", failure.what());
  }
  // Not exit: the objects of the test belong to the parent.
  std::fflush(nullptr);
  _exit(status);
}

}  // namespace

ChildProcess::ChildProcess(const std::function<int()>& work) {
  std::fflush(nullptr);
  mID = fork();
  if (mID < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (mID == 0) RunAndExit(work);
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept : mID(std::exchange(other.mID, -1)) {}

ChildProcess::~ChildProcess() {
  if (mID > 0) Kill();
}

void ChildProcess::Kill() {
  kill(mID, SIGKILL);
  Wait();
}

int ChildProcess::Wait() {
  int status = 0;
  while (waitpid(mID, &status, 0) < 0 && errno == EINTR) {
  }
  mID = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace Support

#include "support/WaitingThread.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <ios>
#include <string>

namespace Support {
namespace {

struct SystemCall {
  long mNumber = -1;
  std::uintptr_t mFirstArgument = 0;
};

/// The system call in which a thread sleeps; none while it runs.
SystemCall CallOf(pid_t thread) {
  std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/syscall");
  SystemCall call;
  file >> call.mNumber >> std::hex >> call.mFirstArgument;
  return file ? call : SystemCall();
}

}  // namespace

pid_t ThreadID() {
  return static_cast<pid_t>(syscall(SYS_gettid));
}

bool IsWaitingOn(pid_t thread, const void* lock, std::size_t size) {
  const auto begin = reinterpret_cast<std::uintptr_t>(lock);
  const SystemCall call = CallOf(thread);
  return call.mNumber == SYS_futex && call.mFirstArgument >= begin && call.mFirstArgument < begin + size;
}

bool IsWaitingInSystemCall(pid_t thread, long number) {
  return CallOf(thread).mNumber == number;
}

}  // namespace Support

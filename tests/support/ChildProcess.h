#pragma once

#include <sys/types.h>

#include <functional>

namespace Support {

/// A child made by fork that runs a function and exits with its result. The function must not return to the
/// test: an exception that leaves it ends the child with status 99.
class ChildProcess {
 public:
  explicit ChildProcess(const std::function<int()>& work);
  /// Kills and reaps a child that was not waited for.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&&) = delete;

  pid_t ID() const { return mID; }
  /// Sends SIGKILL and waits for the end.
  void Kill();
  /// Waits for the end and returns the exit status, or minus the number of the signal that ended it.
  int Wait();

 private:
  pid_t mID;
};

}  // namespace Support

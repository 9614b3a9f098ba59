#pragma once

#include <sys/syscall.h>

#include <atomic>
#include <thread>

#include "support/WaitUntil.h"
#include "support/WaitingThread.h"

namespace Support {

/// Runs a function in a thread. The constructor returns when the thread waits for a lock; the destructor
/// waits for the thread to end.
class BlockedThread {
 public:
  template <class Function>
  explicit BlockedThread(Function function)
      : mThread([this, function] {
          mID = ThreadID();
          function();
        }) {
    mbWaits = WaitUntil([this] { return IsWaitingInSystemCall(mID, SYS_futex); });
  }

  bool Waits() const { return mbWaits; }

 private:
  std::atomic<pid_t> mID{0};
  bool mbWaits = false;
  std::jthread mThread;
};

}  // namespace Support

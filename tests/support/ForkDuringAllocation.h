#pragma once

#include <sys/syscall.h>
#include <sys/types.h>

#include <atomic>
#include <functional>
#include <thread>

#include "support/AllocationCounter.h"
#include "support/ChildProcess.h"
#include "support/ForkedThread.h"
#include "support/WaitUntil.h"
#include "support/WaitingThread.h"

namespace Support {

enum ForkOutcome : int { CHILD_SUCCEEDED, CHILD_FAILED, ALLOCATION_NOT_REACHED };

/// A thread whose work is held in one of its allocations, counted from 0.
class HeldWorker {
 public:
  HeldWorker(unsigned long allocation, const std::function<bool()>& work)
      : mThread([this, allocation, &work] {
          const AllocationHook hook(
              allocation, [](void* self) { static_cast<HeldWorker*>(self)->Hold(); }, this);
          work();
          mbEnded = true;
        }) {}
  ~HeldWorker() { Release(); }
  HeldWorker(const HeldWorker&) = delete;
  HeldWorker& operator=(const HeldWorker&) = delete;

  /// Returns false if the work has ended without that allocation.
  bool WaitUntilHeld() const {
    return WaitUntil([this] { return mbHeld || mbEnded; }) && mbHeld;
  }
  void Release() { mbReleased = true; }

 private:
  void Hold() {
    mbHeld = true;
    while (!mbReleased) std::this_thread::yield();
  }

  std::atomic<bool> mbHeld{false};
  std::atomic<bool> mbReleased{false};
  std::atomic<bool> mbEnded{false};
  std::jthread mThread;
};

/// In a forked process, one thread does the work and is held in one of its allocations. Meanwhile another
/// thread forks, and the child does the work as well. If the fork waits for a lock of the held thread, that
/// thread is released first. A child that hangs has failed.
inline ForkOutcome ForkDuringAllocation(unsigned long allocation, const std::function<bool()>& work) {
  return static_cast<ForkOutcome>(
      ChildProcess([allocation, &work]() -> int {
        HeldWorker worker(allocation, work);
        if (!worker.WaitUntilHeld()) return ALLOCATION_NOT_REACHED;
        std::atomic<pid_t> forker{0};
        std::atomic<pid_t> child{0};
        std::jthread forking([&] {
          forker = ThreadID();
          child = StartChild(work);
        });
        const bool goesOn = WaitUntil([&] { return child != 0 || IsWaitingInSystemCall(forker, SYS_futex); });
        worker.Release();
        forking.join();
        return goesOn && SucceededChild(child) ? CHILD_SUCCEEDED : CHILD_FAILED;
      }).Wait());
}

}  // namespace Support

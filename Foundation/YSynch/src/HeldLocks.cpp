#include "HeldLocks.h"

#include <YBase/CancellationGuard.h>

#include <chrono>
#include <thread>

namespace YSynch {

constinit thread_local HeldLocks HeldLocks::sThis;
constinit std::atomic<bool> HeldLocks::sbCollectedByFork{false};

void HeldLocks::Pause() noexcept {
  // With a bound, because the holder of a lock that the fork needs may be waiting for this thread.
  constexpr int ROUNDS = 20;
  const YBase::CancellationGuard cancellationGuard;
  for (int i = 0; i != ROUNDS && sbCollectedByFork.load(std::memory_order_relaxed); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

}  // namespace YSynch

#pragma once

#include <pthread.h>

namespace YBase {

/// Keeps the calling thread from being cancelled (`pthread_cancel`) as long as the guard exists; a
/// cancellation that comes meanwhile takes effect later. It is told by an exception that nobody may keep,
/// which ends the process where it meets a function that must not throw.
///
/// Threads: belongs to one. Guards may be nested.
class CancellationGuard {
 public:
  CancellationGuard() noexcept { ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &mPreviousState); }
  ~CancellationGuard() { ::pthread_setcancelstate(mPreviousState, nullptr); }
  CancellationGuard(const CancellationGuard&) = delete;
  CancellationGuard& operator=(const CancellationGuard&) = delete;

 private:
  int mPreviousState = PTHREAD_CANCEL_ENABLE;
};

}  // namespace YBase

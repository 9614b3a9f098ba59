#pragma once

#include <pthread.h>

namespace YBase {

/// Prevents the calling thread from being cancelled (`pthread_cancel`) as long as the guard exists; a
/// cancellation that is requested meanwhile takes effect later. A cancellation is an exception that must be
/// thrown again wherever it is caught, and that ends the process at a function that must not throw.
///
/// Threads: belongs to one thread. Guards may be nested.
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

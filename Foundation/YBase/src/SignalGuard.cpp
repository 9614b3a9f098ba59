#include <YBase/CancellationGuard.h>
#include <YBase/SignalGuard.h>

#include <cerrno>
#include <csignal>

#include "Platform.h"

namespace YBase {

namespace {

sigset_t SetOf(int signalNumber) noexcept {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, signalNumber);
  return signals;
}

bool IsPending(int signalNumber) noexcept {
  sigset_t pending;
  return ::sigpending(&pending) == 0 && sigismember(&pending, signalNumber) == 1;
}

}  // namespace

SignalGuard::SignalGuard(int signalNumber) noexcept : mSignalNumber(signalNumber) {
  const sigset_t signals = SetOf(mSignalNumber);
  sigset_t previous;
  ::pthread_sigmask(SIG_BLOCK, &signals, &previous);
  mbWasBlocked = sigismember(&previous, mSignalNumber) == 1;
  // A signal that was not blocked cannot have been pending.
  mbWasPending = mbWasBlocked && IsPending(mSignalNumber);
}

SignalGuard::~SignalGuard() {
  // Consuming a signal is a cancellation point, and a destructor must not be left by a cancellation.
  const CancellationGuard cancellationGuard;
  const int error = errno;
  // Pending signals are not counted, so one that was pending before also covers any that were raised since.
  if (!mbWasPending) Platform::ConsumePendingSignal(mSignalNumber);
  if (!mbWasBlocked) {
    const sigset_t signals = SetOf(mSignalNumber);
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  }
  errno = error;
}

}  // namespace YBase

#pragma once

namespace YBase {

/// Suppresses a signal that a call raises in addition to its error, such as `SIGPIPE` and `SIGXFSZ` from
/// `write`. The calling thread blocks the signal as long as the guard exists, and at the end discards one
/// that was raised meanwhile.
///
/// The host does not notice: its handler is not called, and if the signal was blocked or pending before, it
/// remains so. `errno` is left as it is.
///
/// Threads: belongs to one thread. Guards may be nested.
class SignalGuard {
 public:
  explicit SignalGuard(int signalNumber) noexcept;
  ~SignalGuard();
  SignalGuard(const SignalGuard&) = delete;
  SignalGuard& operator=(const SignalGuard&) = delete;

 private:
  const int mSignalNumber;
  bool mbWasBlocked = false;
  bool mbWasPending = false;
};

}  // namespace YBase

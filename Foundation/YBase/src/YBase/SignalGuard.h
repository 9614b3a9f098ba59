#pragma once

namespace YBase {

/// Turns a signal that a call raises beside its error, such as `SIGPIPE` and `SIGXFSZ` from `write`, into the
/// error alone: the calling thread blocks it as long as the guard exists, and what was raised meanwhile is
/// taken away at the end.
///
/// The host notices nothing: its handler is not called, and a signal that it had blocked, or that was pending
/// before, stays so. `errno` is left as it is.
///
/// Threads: belongs to one. Guards may be nested.
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

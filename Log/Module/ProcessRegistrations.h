#pragma once

namespace YLog {

/// What a started module registers in the process: the message trace, and the functions by which the
/// synchronisation library reads, sets and clears the headers of a thread. The destructor undoes all of it.
///
/// \pre At most one exists at a time.
class ProcessRegistrations {
 public:
  /// Failure: `std::bad_alloc`; nothing stays registered.
  ProcessRegistrations();
  ~ProcessRegistrations();
  ProcessRegistrations(const ProcessRegistrations&) = delete;
  ProcessRegistrations& operator=(const ProcessRegistrations&) = delete;

 private:
  struct Nothing {};
  explicit ProcessRegistrations(Nothing /*registered*/) noexcept {}
};

}  // namespace YLog

#pragma once

namespace YLog {

/// What a started module registers in the process: the message trace, and how the synchronisation library
/// reads, installs and removes the headers of a thread. Destruction undoes all of it.
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

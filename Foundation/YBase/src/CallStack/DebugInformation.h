#pragma once

#include <cstdint>
#include <vector>

#include "CallStack/LoadedModule.h"
#include "CallStack/StackFrame.h"

struct backtrace_state;

namespace YBase {

/// The symbol tables and debug information of all modules that are loaded at the first call stack, as
/// libbacktrace reads them.
///
/// Ownership: what was read cannot be freed. Threads: guarded by the `LookupLock`.
class DebugInformation {
 public:
  /// Reads the files, unless that was done before. If there are not enough descriptors or memory, that is
  /// left to the next call.
  void Open();

  /// Whether what was read belongs to this module. It does not if the module was loaded later, or if another
  /// file had taken the place of the module's own.
  bool Knows(const LoadedModule& module) const noexcept;

  /// The function at this address, after those that were inlined into it there; a frame without a name if
  /// none is known.
  /// \pre The address is in a known module.
  std::vector<StackFrame> Find(std::uintptr_t address) const;

 private:
  backtrace_state* ReadFiles() noexcept;

  backtrace_state* mpState = nullptr;
  std::vector<LoadedModule::ID> mModules;
  int mFailureCount = 0;
};

}  // namespace YBase

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <ctime>
#include <vector>

#include "FrameText.h"
#include "LoadedModule.h"

struct backtrace_state;

namespace YBase {

/// Symbol tables and debug information of the modules that are loaded when they are first asked for. Modules
/// of a later time are not known here, and one that was exchanged meanwhile is not mistaken for the old one.
///
/// Ownership: what has been read stays for the life of the process, so there is one of these.
/// Threads: guarded by the `LookupLock`.
class DebugInformation {
 public:
  /// The function in which an address of this module lies, behind those inlined into it there; nothing where
  /// nothing is known.
  std::vector<SourceFrame> Find(std::uintptr_t address, const LoadedModule& module);

 private:
  /// Changes when a file is exchanged or written to.
  struct FileState {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::timespec changed{};

    bool operator==(const FileState& other) const noexcept;
  };
  struct KnownModule {
    LoadedModule module;
    FileState file;
  };

  static FileState GetFileState(const LoadedModule& module) noexcept;
  void Open();
  bool Knows(const LoadedModule& module) const noexcept;

  backtrace_state* mpState = nullptr;
  unsigned long long mUnloadedWhenOpened = 0;
  std::vector<KnownModule> mKnownModules;
};

}  // namespace YBase

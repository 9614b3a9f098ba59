#pragma once

#include <sys/types.h>

#include <cstdint>
#include <ctime>
#include <optional>
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
  /// Reads what there is, unless that was done before. Where descriptors or memory are short, it is left for
  /// another time.
  void Open();

  /// The function in which an address of this module lies, behind those inlined into it there; empty where
  /// none is known. Nothing where that cannot be told for now.
  std::optional<std::vector<SourceFrame>> Find(std::uintptr_t address, const LoadedModule& module) const;

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
  static std::optional<std::vector<KnownModule>> FindModules();
  bool Knows(const LoadedModule& module) const noexcept;

  backtrace_state* mpState = nullptr;
  int mAttempts = 0;
  unsigned long long mUnloadedWhenOpened = 0;
  std::vector<KnownModule> mKnownModules;
};

}  // namespace YBase

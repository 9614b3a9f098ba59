#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace YBase {

/// The program or a shared object of this process.
struct LoadedModule {
  std::string path;         // As the loader knows it; empty for the program.
  std::uintptr_t base = 0;  // What the linker's addresses are moved by.
  std::string buildID;      // Empty where the linker gave none.

  bool operator==(const LoadedModule&) const = default;
};

/// How often modules have been loaded and unloaded.
struct LoadCounts {
  unsigned long long loaded = 0;
  unsigned long long unloaded = 0;

  bool operator==(const LoadCounts&) const = default;
};

/// These ask the loader, and are called with the `LookupLock` held: a fork in the middle of them would leave
/// the loader's list of modules locked in the child.
LoadCounts GetLoadCounts() noexcept;
std::optional<LoadedModule> FindLoadedModule(std::uintptr_t address);
bool IsLoaded(const LoadedModule& module) noexcept;
std::vector<LoadedModule> GetLoadedModules();

}  // namespace YBase

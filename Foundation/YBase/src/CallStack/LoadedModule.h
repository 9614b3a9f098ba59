#pragma once

#include <link.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace YBase {

/// The program or a shared object of this process.
///
/// Ownership: refers to what the loader keeps, so it is valid until the module is unloaded.
/// Threads: the loader is asked with the `LookupLock` held, for which a fork waits. A fork while the loader
/// is being asked would leave its list of modules locked in the child.
class LoadedModule {
 public:
  /// The first bytes of a module's file: the ELF header, the sizes of all segments and, if the linker added
  /// one, the build ID. Zeros follow if the file or its first segment is shorter.
  using Beginning = std::array<char, 4096>;

  /// Distinguishes one build of a module in one place from everything else, even after it was unloaded.
  struct ID {
    std::uintptr_t base = 0;
    Beginning beginning{};
    bool operator==(const ID&) const = default;
  };

  static std::optional<LoadedModule> FindByAddress(std::uintptr_t address) noexcept;
  /// The identities of all modules.
  static std::vector<ID> GetIDs();
  /// Whether such a module is loaded, and its path still leads to the file that it was loaded from.
  static bool IsUnchanged(const ID& id) noexcept;

  explicit LoadedModule(const dl_phdr_info& info) noexcept : mInfo(info) {}

  ID GetID() const noexcept;
  std::string GetPath() const;
  /// What the linker's addresses are moved by.
  std::uintptr_t GetBase() const noexcept { return mInfo.dlpi_addr; }

 private:
  bool Contains(std::uintptr_t address) const noexcept;
  bool IsProgram() const noexcept;
  bool IsOfItsFile() const noexcept;
  std::string_view GetFirstBytes() const noexcept;

  dl_phdr_info mInfo;
};

}  // namespace YBase

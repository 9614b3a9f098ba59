#include "LoadedModule.h"

#include <link.h>

#include <algorithm>
#include <new>
#include <span>
#include <string_view>
#include <utility>

#include "BuildID.h"

namespace YBase {
namespace {

using Segment = ElfW(Phdr);

/// Calls `visit` with one module after the other until it returns false.
template <class Visit>
void VisitModules(Visit visit) {
  struct Visitor {
    Visit visit;
    bool isOutOfMemory = false;
  } visitor{std::move(visit)};
  const auto call = [](dl_phdr_info* info, std::size_t, void* data) noexcept {
    auto& self = *static_cast<Visitor*>(data);
    // Nothing is thrown through the loader, which is C and holds a lock.
    try {
      return self.visit(std::as_const(*info)) ? 0 : 1;
    } catch (const std::bad_alloc&) {
      self.isOutOfMemory = true;
      return 1;
    }
  };
  ::dl_iterate_phdr(call, &visitor);
  if (visitor.isOutOfMemory) throw std::bad_alloc();
}

bool Holds(const dl_phdr_info& module, std::uintptr_t address) noexcept {
  const std::span segments(module.dlpi_phdr, module.dlpi_phnum);
  return std::any_of(segments.begin(), segments.end(), [&](const Segment& segment) {
    return segment.p_type == PT_LOAD && address - module.dlpi_addr - segment.p_vaddr < segment.p_memsz;
  });
}

std::string_view GetPath(const dl_phdr_info& module) noexcept {
  return module.dlpi_name != nullptr ? module.dlpi_name : "";
}

LoadedModule Describe(const dl_phdr_info& module) {
  return {std::string(GetPath(module)), module.dlpi_addr, GetBuildID(module)};
}

}  // namespace

LoadCounts GetLoadCounts() noexcept {
  LoadCounts counts;
  VisitModules([&counts](const dl_phdr_info& module) {
    counts = {module.dlpi_adds, module.dlpi_subs};
    return false;
  });
  return counts;
}

std::optional<LoadedModule> FindLoadedModule(std::uintptr_t address) {
  std::optional<LoadedModule> found;
  VisitModules([&found, address](const dl_phdr_info& module) {
    if (!Holds(module, address)) return true;
    found = Describe(module);
    return false;
  });
  return found;
}

bool IsLoaded(const LoadedModule& module) noexcept {
  bool isLoaded = false;
  VisitModules([&](const dl_phdr_info& candidate) {
    isLoaded = candidate.dlpi_addr == module.base && GetPath(candidate) == module.path;
    return !isLoaded;
  });
  return isLoaded;
}

std::vector<LoadedModule> GetLoadedModules() {
  std::vector<LoadedModule> modules;
  VisitModules([&modules](const dl_phdr_info& module) {
    modules.push_back(Describe(module));
    return true;
  });
  return modules;
}

}  // namespace YBase

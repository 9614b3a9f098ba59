#include "CallStack/LoadedModule.h"

#include <YBase/System.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <span>

namespace YBase {
namespace {

using Segment = ElfW(Phdr);

/// Calls `visit` with one module after the other until it returns true. The loader is C and holds a lock
/// meanwhile, so nothing may be thrown.
template <class Visit>
void VisitModules(Visit visit) noexcept {
  const auto call = [](dl_phdr_info* info, std::size_t, void* data) noexcept {
    return (*static_cast<Visit*>(data))(LoadedModule(*info)) ? 1 : 0;
  };
  ::dl_iterate_phdr(call, &visit);
}

template <class Predicate>
std::optional<LoadedModule> FindModule(Predicate isWanted) noexcept {
  std::optional<LoadedModule> found;
  VisitModules([&](const LoadedModule& module) {
    if (isWanted(module)) found = module;
    return found.has_value();
  });
  return found;
}

}  // namespace

std::optional<LoadedModule> LoadedModule::FindByAddress(std::uintptr_t address) noexcept {
  return FindModule([address](const LoadedModule& module) { return module.Contains(address); });
}

std::vector<LoadedModule::ID> LoadedModule::GetIDs() {
  std::size_t count = 0;
  VisitModules([&count](const LoadedModule&) { return ++count == 0; });
  std::vector<ID> ids;
  ids.reserve(count);
  VisitModules([&ids](const LoadedModule& module) {
    // Another thread may have loaded one more.
    if (ids.size() < ids.capacity()) ids.push_back(module.GetID());
    return false;
  });
  return ids;
}

bool LoadedModule::IsUnchanged(const ID& id) noexcept {
  return FindModule([&id](const LoadedModule& module) {
           return module.GetBase() == id.base && module.GetID() == id && module.IsOfItsFile();
         })
      .has_value();
}

LoadedModule::ID LoadedModule::GetID() const noexcept {
  ID id{.base = mInfo.dlpi_addr};
  std::ranges::copy(GetFirstBytes(), id.beginning.begin());
  return id;
}

std::string LoadedModule::GetPath() const {
  return IsProgram() ? GetExecutablePath() : mInfo.dlpi_name;
}

bool LoadedModule::IsOfItsFile() const noexcept {
  // The program's own file, even if another one has been put in its place.
  const int descriptor = ::open(IsProgram() ? "/proc/self/exe" : mInfo.dlpi_name, O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return false;
  Beginning beginning{};
  const ssize_t size = ::pread(descriptor, beginning.data(), GetFirstBytes().size(), 0);
  ::close(descriptor);
  return size > 0 && beginning == GetID().beginning;
}

bool LoadedModule::Contains(std::uintptr_t address) const noexcept {
  const std::span segments(mInfo.dlpi_phdr, mInfo.dlpi_phnum);
  return std::any_of(segments.begin(), segments.end(), [=, this](const Segment& segment) {
    return segment.p_type == PT_LOAD && address - mInfo.dlpi_addr - segment.p_vaddr < segment.p_memsz;
  });
}

bool LoadedModule::IsProgram() const noexcept {
  return mInfo.dlpi_name == nullptr || *mInfo.dlpi_name == '\0';
}

std::string_view LoadedModule::GetFirstBytes() const noexcept {
  for (const Segment& segment : std::span(mInfo.dlpi_phdr, mInfo.dlpi_phnum)) {
    if (segment.p_type != PT_LOAD || segment.p_offset != 0 || (segment.p_flags & PF_R) == 0) continue;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the loader provides a number.
    const auto* const begin = reinterpret_cast<const char*>(mInfo.dlpi_addr + segment.p_vaddr);
    return {begin, std::min<std::size_t>(segment.p_filesz, std::tuple_size_v<Beginning>)};
  }
  return {};
}

}  // namespace YBase

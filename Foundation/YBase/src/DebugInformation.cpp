#include "DebugInformation.h"

#include <backtrace.h>
#include <sys/stat.h>

#include <algorithm>
#include <new>
#include <utility>

#include "BuildID.h"

namespace YBase {
namespace {

// What cannot be read is as good as missing, and the reason would be of no use in a log record.
void IgnoreError(void*, const char*, int) noexcept {}

void IgnoreSymbol(void*, std::uintptr_t, const char*, std::uintptr_t, std::uintptr_t) noexcept {}

std::string TextOf(const char* text) {
  return text != nullptr ? text : "";
}

/// Receives what the reader calls back with. Nothing is thrown through the reader, which is C.
struct Finding {
  std::vector<SourceFrame> frames;
  std::string symbol;
  bool isOutOfMemory = false;
};

int AddFrame(void* data, std::uintptr_t, const char* file, int line, const char* function) noexcept {
  auto& finding = *static_cast<Finding*>(data);
  try {
    if (function != nullptr || file != nullptr) {
      finding.frames.push_back({TextOf(function), TextOf(file), line});
    }
    return 0;
  } catch (const std::bad_alloc&) {
    finding.isOutOfMemory = true;
    return 1;
  }
}

void SetSymbol(void* data, std::uintptr_t, const char* name, std::uintptr_t, std::uintptr_t) noexcept {
  auto& finding = *static_cast<Finding*>(data);
  try {
    finding.symbol = TextOf(name);
  } catch (const std::bad_alloc&) {
    finding.isOutOfMemory = true;
  }
}

/// Where the reader finds a module. The program's own file, even if another has taken its place.
const char* GetFilePath(const LoadedModule& module) noexcept {
  return module.path.empty() ? "/proc/self/exe" : module.path.c_str();
}

}  // namespace

bool DebugInformation::FileState::operator==(const FileState& other) const noexcept {
  return device == other.device && inode == other.inode && size == other.size &&
         changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
}

DebugInformation::FileState DebugInformation::GetFileState(const LoadedModule& module) noexcept {
  struct stat status;
  if (::stat(GetFilePath(module), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_size, status.st_ctim};
}

std::vector<SourceFrame> DebugInformation::Find(std::uintptr_t address, const LoadedModule& module) {
  if (mpState == nullptr) Open();
  if (mpState == nullptr || !Knows(module)) return {};
  Finding finding;
  backtrace_pcinfo(mpState, address, AddFrame, IgnoreError, &finding);
  backtrace_syminfo(mpState, address, SetSymbol, IgnoreError, &finding);
  if (finding.isOutOfMemory) throw std::bad_alloc();
  // Debug information may hold no more than the bare name of a function, without its namespace.
  if (finding.frames.empty() && !finding.symbol.empty()) finding.frames.emplace_back();
  if (!finding.frames.empty() && !IsMangled(finding.frames.back().function) && !finding.symbol.empty()) {
    finding.frames.back().function = std::move(finding.symbol);
  }
  return std::move(finding.frames);
}

void DebugInformation::Open() {
  mUnloadedWhenOpened = GetLoadCounts().unloaded;
  std::vector<KnownModule> known;
  for (LoadedModule& module : GetLoadedModules()) {
    const FileState file = GetFileState(module);
    // An upgrade may have put another build in the place of the one that is running.
    const bool isThere = file != FileState() && ReadBuildID(GetFilePath(module)) == module.buildID;
    if (isThere) known.push_back({std::move(module), file});
  }
  // One thread at a time is let in here.
  constexpr int NOT_THREADED = 0;
  mpState = backtrace_create_state(nullptr, NOT_THREADED, IgnoreError, nullptr);
  if (mpState == nullptr) return;
  // The reader looks at the modules with its first question. What was gone by then it does not know.
  backtrace_syminfo(mpState, reinterpret_cast<std::uintptr_t>(&IgnoreError), IgnoreSymbol, IgnoreError,
                    nullptr);
  std::erase_if(known, [](const KnownModule& module) { return !IsLoaded(module.module); });
  mKnownModules = std::move(known);
}

/// A module at the same place and of the same build is the same module. Not every build has an ID: without
/// one, it may have been unloaded and its file exchanged before it came back.
bool DebugInformation::Knows(const LoadedModule& module) const noexcept {
  const auto known =
      std::find_if(mKnownModules.begin(), mKnownModules.end(),
                   [&module](const KnownModule& candidate) { return candidate.module == module; });
  if (known == mKnownModules.end()) return false;
  return GetLoadCounts().unloaded == mUnloadedWhenOpened || GetFileState(module) == known->file;
}

}  // namespace YBase

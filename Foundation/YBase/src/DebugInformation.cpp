#include "DebugInformation.h"

#include <YBase/StandardDescriptorsGuard.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <new>
#include <utility>

#include "BuildID.h"
#include "DebugFiles_libbacktrace.h"
#include "RegularFile.h"

namespace YBase {
namespace {

void IgnoreSymbol(void*, std::uintptr_t, const char*, std::uintptr_t, std::uintptr_t) noexcept {}

std::string TextOf(const char* text) {
  return text != nullptr ? text : "";
}

/// Receives what the reader calls back with. Nothing is thrown through the reader, which is C.
struct Finding {
  std::vector<SourceFrame> frames;
  std::string symbol;
  bool isOutOfMemory = false;
  bool isCutShort = false;  // By want of descriptors or memory: there may be more another time.
};

// What else cannot be read is as good as missing, and the reason would be of no use in a log record.
void NoteError(void* data, const char*, int error) noexcept {
  if (IsShortage(error)) static_cast<Finding*>(data)->isCutShort = true;
}

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

// The program's own file, even if another has taken its place.
constexpr const char* OWN_PATH = "/proc/self/exe";

/// Where the reader finds a module.
const char* GetFilePath(const LoadedModule& module) noexcept {
  return module.path.empty() ? OWN_PATH : module.path.c_str();
}

/// The reader has up to three files open at once: a module, that of its debug information, and one that
/// several of those share.
bool CanOpenFiles() noexcept {
  const std::array files{RegularFile(OWN_PATH), RegularFile(OWN_PATH), RegularFile(OWN_PATH)};
  return std::none_of(files.begin(), files.end(),
                      [](const RegularFile& file) { return IsShortage(file.GetError()); });
}

}  // namespace

bool DebugInformation::FileState::operator==(const FileState& other) const noexcept {
  return device == other.device && inode == other.inode && size == other.size &&
         changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
}

DebugInformation::FileState DebugInformation::GetFileState(const LoadedModule& module) noexcept {
  struct stat status;
  if (::stat(GetFilePath(module), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return {status.st_dev, status.st_ino, status.st_size, status.st_ctim};
}

std::optional<std::vector<SourceFrame>> DebugInformation::Find(std::uintptr_t address,
                                                               const LoadedModule& module) const {
  if (mpState == nullptr) return std::nullopt;
  Finding finding;
  if (!Knows(module)) return std::move(finding.frames);
  backtrace_pcinfo(mpState, address, AddFrame, NoteError, &finding);
  backtrace_syminfo(mpState, address, SetSymbol, NoteError, &finding);
  if (finding.isOutOfMemory) throw std::bad_alloc();
  if (finding.isCutShort) return std::nullopt;
  // Debug information may hold no more than the bare name of a function, without its namespace.
  if (finding.frames.empty() && !finding.symbol.empty()) finding.frames.emplace_back();
  if (!finding.frames.empty() && !IsMangled(finding.frames.back().function) && !finding.symbol.empty()) {
    finding.frames.back().function = std::move(finding.symbol);
  }
  return std::move(finding.frames);
}

void DebugInformation::Open() {
  if (mpState != nullptr) return;
  const StandardDescriptorsGuard guard;
  if (!CanOpenFiles()) return;
  mUnloadedWhenOpened = GetLoadCounts().unloaded;
  std::optional<std::vector<KnownModule>> known = FindModules();
  if (!known) return;
  // One thread at a time is let in here.
  constexpr int NOT_THREADED = 0;
  Finding finding;
  backtrace_state* const state = backtrace_create_state(nullptr, NOT_THREADED, NoteError, &finding);
  if (state == nullptr) return;
  // The reader looks at the modules with its first question. What was gone by then it does not know.
  backtrace_syminfo(state, reinterpret_cast<std::uintptr_t>(&NoteError), IgnoreSymbol, NoteError, &finding);
  // What it could not read now it would never read. It cannot be freed as a whole, so only some are given up.
  constexpr int MAX_ATTEMPTS = 3;
  if (finding.isCutShort && ++mAttempts < MAX_ATTEMPTS) {
    ReleaseDebugFiles();
    return;
  }
  std::erase_if(*known, [](const KnownModule& module) { return !IsLoaded(module.module); });
  mKnownModules = std::move(*known);
  mpState = state;
}

std::optional<std::vector<DebugInformation::KnownModule>> DebugInformation::FindModules() {
  std::vector<KnownModule> found;
  for (LoadedModule& module : GetLoadedModules()) {
    const FileState file = GetFileState(module);
    const std::optional<std::string> buildID = ReadBuildID(GetFilePath(module));
    if (!buildID) return std::nullopt;
    // An upgrade may have put another build in the place of the one that is running.
    const bool isThere = file != FileState() && *buildID == module.buildID;
    if (isThere) found.push_back({std::move(module), file});
  }
  return found;
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

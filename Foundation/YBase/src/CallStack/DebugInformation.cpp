#include "CallStack/DebugInformation.h"

#include <YBase/StandardDescriptorsGuard.h>
#include <backtrace.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <utility>

#include "CallStack/FrameText.h"

namespace YBase {
namespace {

/// Receives what libbacktrace finds. Nothing is thrown through it, because it is C.
struct Finding {
  std::vector<StackFrame> frames;
  std::string symbol;
  bool isOutOfMemory = false;
};

std::string TextOf(const char* text) {
  return text != nullptr ? text : "";
}

int AddFrame(void* data, std::uintptr_t, const char* file, int line, const char* function) noexcept {
  auto& finding = *static_cast<Finding*>(data);
  if (file == nullptr && function == nullptr) return 0;
  try {
    finding.frames.push_back({.function = TextOf(function), .file = TextOf(file), .line = line});
  } catch (const std::bad_alloc&) {
    finding.isOutOfMemory = true;
  }
  return 0;
}

void SetSymbol(void* data, std::uintptr_t, const char* name, std::uintptr_t, std::uintptr_t) noexcept {
  auto& finding = *static_cast<Finding*>(data);
  try {
    finding.symbol = TextOf(name);
  } catch (const std::bad_alloc&) {
    finding.isOutOfMemory = true;
  }
}

// What cannot be read is as good as missing.
void IgnoreError(void*, const char*, int) noexcept {}
void IgnoreSymbol(void*, std::uintptr_t, const char*, std::uintptr_t, std::uintptr_t) noexcept {}

/// Notes that there were not enough descriptors or not enough memory.
void NoteShortage(void* isShort, const char*, int error) noexcept {
  if (error == EMFILE || error == ENFILE || error == ENOMEM) *static_cast<bool*>(isShort) = true;
}

/// libbacktrace has up to three files open at the same time: a module, that of its debug information, and one
/// that several of those share.
bool CanOpenFiles() noexcept {
  std::array<int, 3> descriptors;
  for (int& descriptor : descriptors) descriptor = ::open("/proc/self/exe", O_RDONLY | O_CLOEXEC);
  for (const int descriptor : descriptors) ::close(descriptor);
  return std::find(descriptors.begin(), descriptors.end(), -1) == descriptors.end();
}

}  // namespace

void DebugInformation::Open() {
  if (mpState != nullptr) return;
  const StandardDescriptorsGuard guard;
  if (!CanOpenFiles()) return;
  // libbacktrace opens files by path. What it has read belongs to a module that was already loaded before,
  // and whose path leads to the right file even afterwards.
  mModules = LoadedModule::GetIDs();
  mpState = ReadFiles();
  std::erase_if(mModules, [](const LoadedModule::ID& id) { return !LoadedModule::IsUnchanged(id); });
}

bool DebugInformation::Knows(const LoadedModule& module) const noexcept {
  return mpState != nullptr && std::find(mModules.begin(), mModules.end(), module.GetID()) != mModules.end();
}

std::vector<StackFrame> DebugInformation::Find(std::uintptr_t address) const {
  Finding finding;
  backtrace_pcinfo(mpState, address, AddFrame, IgnoreError, &finding);
  backtrace_syminfo(mpState, address, SetSymbol, IgnoreError, &finding);
  if (finding.isOutOfMemory) throw std::bad_alloc();
  std::vector<StackFrame>& frames = finding.frames;
  if (frames.empty()) frames.emplace_back();
  for (StackFrame& frame : frames) frame.isInlined = &frame != &frames.back();
  // Debug information may contain only the bare name of a function, without its namespace.
  if (!IsMangled(frames.back().function) && !finding.symbol.empty()) frames.back().function = finding.symbol;
  return std::move(frames);
}

/// Null if it is worth another attempt.
backtrace_state* DebugInformation::ReadFiles() noexcept {
  constexpr int NOT_THREADED = 0;
  bool isShort = false;
  backtrace_state* const state = backtrace_create_state(nullptr, NOT_THREADED, NoteShortage, &isShort);
  // The first question makes libbacktrace read the files. What it cannot read now, it will never read.
  if (state != nullptr) backtrace_syminfo(state, 0, IgnoreSymbol, NoteShortage, &isShort);
  // A state cannot be freed, so only a few are given up.
  constexpr int MAX_FAILURE_COUNT = 3;
  return isShort && ++mFailureCount < MAX_FAILURE_COUNT ? nullptr : state;
}

}  // namespace YBase

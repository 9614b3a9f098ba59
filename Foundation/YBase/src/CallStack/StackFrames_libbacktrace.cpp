#include <YBase/NeverDestroyed.h>

#include <optional>
#include <utility>

#include "CallStack/DebugInformation.h"
#include "CallStack/ExportedFunction.h"
#include "CallStack/LoadedModule.h"
#include "CallStack/LookupLock.h"
#include "CallStack/StackFrames.h"

namespace YBase {
namespace {

// Guarded by the `LookupLock`. There is one for all threads, because its size grows with the debug
// information.
constinit NeverDestroyed<DebugInformation> gsDebugInformation;

void AppendFrames(std::uintptr_t address, std::vector<StackFrame>& frames) {
  const std::optional<LoadedModule> module = LoadedModule::FindByAddress(address);
  std::vector<StackFrame> found(1);
  if (module && gsDebugInformation->Knows(*module)) found = gsDebugInformation->Find(address);
  for (StackFrame& frame : found) {
    frame.address = address;
    if (module) {
      frame.module = module->GetPath();
      frame.moduleBase = module->GetBase();
    }
    frames.push_back(std::move(frame));
  }
}

std::vector<StackFrame> FindInDebugInformation(std::span<const std::uintptr_t> addresses) {
  std::vector<StackFrame> frames;
  const LookupLock lock;
  gsDebugInformation->Open();
  for (const std::uintptr_t address : addresses) AppendFrames(address, frames);
  return frames;
}

}  // namespace

std::vector<StackFrame> FindFrames(std::span<const std::uintptr_t> addresses) {
  std::vector<StackFrame> frames = FindInDebugInformation(addresses);
  for (StackFrame& frame : frames) {
    if (frame.function.empty()) frame.function = FindExportedFunction(frame.address).function;
  }
  return frames;
}

}  // namespace YBase

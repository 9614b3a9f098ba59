// With the debug information of all modules, read in the process itself and kept for all threads.

#include <YBase/System.h>
#include <unwind.h>

#include <optional>
#include <unordered_map>
#include <utility>

#include "DebugInformation.h"
#include "DynamicSymbol.h"
#include "FrameText.h"
#include "LoadedModule.h"
#include "LookupLock.h"
#include "StackFrames.h"

namespace YBase::StackFrames {
namespace {

using SharedFrames = std::shared_ptr<const Frames>;

/// What has been found, by address, as long as no module comes or goes.
class Cache {
 public:
  void ForgetUnlessCurrent() noexcept {
    const LoadCounts counts = GetLoadCounts();
    if (counts == mCounts) return;
    mFrames.clear();
    mCounts = counts;
  }

  SharedFrames Find(std::uintptr_t address) const noexcept {
    const auto found = mFrames.find(address);
    return found != mFrames.end() ? found->second : nullptr;
  }

  void Add(std::uintptr_t address, const SharedFrames& frames) {
    // Call stacks are written in few places. Where they are not, the ones in use are soon found again.
    constexpr std::size_t MAX_SIZE = 4096;
    if (mFrames.size() >= MAX_SIZE) mFrames.clear();
    mFrames.emplace(address, frames);
  }

 private:
  LoadCounts mCounts;
  std::unordered_map<std::uintptr_t, SharedFrames> mFrames;
};

struct Shared {
  DebugInformation debugInformation;
  Cache cache;
};

/// What all lookups share: made by the first, and never destroyed, because stacks are taken while the process
/// ends, too.
Shared& GetShared(const LookupLock&) {
  static constinit Shared* spShared = nullptr;
  if (spShared == nullptr) spShared = new Shared;
  return *spShared;
}

struct Finding {
  SharedFrames cached;
  std::optional<LoadedModule> module;
  std::vector<SourceFrame> sources;
  bool isFinal = true;
};

Finding Find(std::uintptr_t address) {
  const LookupLock lock;
  Shared& shared = GetShared(lock);
  Finding finding;
  finding.cached = shared.cache.Find(address);
  if (finding.cached != nullptr) return finding;
  finding.module = FindLoadedModule(address);
  if (!finding.module) return finding;
  std::optional<std::vector<SourceFrame>> sources = shared.debugInformation.Find(address, *finding.module);
  finding.isFinal = sources.has_value();
  if (sources) finding.sources = std::move(*sources);
  return finding;
}

ModuleOffset GetPlace(std::uintptr_t address, const std::optional<LoadedModule>& module) {
  if (!module) return {{}, address};
  return {module->path.empty() ? GetExecutablePath() : module->path, address - module->base};
}

SharedFrames LookUp(std::uintptr_t address) {
  Finding finding = Find(address);
  if (finding.cached != nullptr) return finding.cached;
  // Asked with no lock held: see there.
  if (finding.sources.empty()) finding.sources.push_back({FindDynamicSymbol(address).name, {}, 0});
  const ModuleOffset place = GetPlace(address, finding.module);
  Frames frames;
  frames.reserve(finding.sources.size());
  for (const SourceFrame& source : finding.sources) {
    const bool isInlined = &source != &finding.sources.back();
    frames.push_back(isInlined ? MakeInlinedFrame(source, place) : MakeFrame(source, place));
  }
  auto shared = std::make_shared<const Frames>(std::move(frames));
  if (!finding.isFinal) return shared;
  const LookupLock lock;
  GetShared(lock).cache.Add(address, shared);
  return shared;
}

struct Walk {
  std::span<std::uintptr_t> addresses;
  std::size_t count = 0;
};

_Unwind_Reason_Code AddAddress(_Unwind_Context* context, void* data) noexcept {
  auto& walk = *static_cast<Walk*>(data);
  int isInterrupted = 0;
  const std::uintptr_t address = _Unwind_GetIPInfo(context, &isInterrupted);
  if (address == 0 || walk.count == walk.addresses.size()) return _URC_END_OF_STACK;
  // Where a call returns to may belong to another function already; where a signal came in does not.
  walk.addresses[walk.count++] = isInterrupted != 0 ? address : address - 1;
  return _URC_NO_REASON;
}

}  // namespace

std::size_t GetAddresses(std::span<std::uintptr_t> addresses) noexcept {
  Walk walk{addresses};
  _Unwind_Backtrace(AddAddress, &walk);
  return walk.count;
}

std::vector<SharedFrames> Describe(std::span<const std::uintptr_t> addresses) {
  std::vector<SharedFrames> described;
  described.reserve(addresses.size());
  {
    // Once is enough: what is loaded at these addresses came before this, and stays until the end of it.
    const LookupLock lock;
    Shared& shared = GetShared(lock);
    shared.cache.ForgetUnlessCurrent();
    shared.debugInformation.Open();
  }
  for (const std::uintptr_t address : addresses) described.push_back(LookUp(address));
  return described;
}

}  // namespace YBase::StackFrames

#include <YLog/Initializer.h>

#include <YSynch/ForkParticipant.h>

#include "Module/ModuleMain_Impl.h"

namespace YLog {

constinit YBase::ModuleMainPtr<ModuleMain, ModuleMain_Impl> gModuleMainPtr;

namespace {

/// Keeps a fork from catching the module half started or half stopped.
class StartAndStopGuard final : private YSynch::ForkParticipant {
 public:
  StartAndStopGuard() { Join(); }
  ~StartAndStopGuard() override { Leave(); }

 private:
  void BeforeFork() noexcept override { gModuleMainPtr.LockForFork(); }
  void AfterForkInParent() noexcept override { gModuleMainPtr.UnlockAfterFork(); }
  void AfterForkInChild() noexcept override { gModuleMainPtr.UnlockAfterFork(); }
};

/// Made at load, so that no fork can meet it half made; never destroyed, because an `Initializer` may be
/// used, and a process may fork, when static objects go.
[[maybe_unused]] const auto* const gsStartAndStopGuard = new StartAndStopGuard;

}  // namespace

Initializer::Initializer() {
  gModuleMainPtr.Initialize();
}

Initializer::~Initializer() {
  gModuleMainPtr.Finalize();
}

}  // namespace YLog

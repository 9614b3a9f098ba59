#include <YLog/Initializer.h>

#include <YSynch/ForkParticipant.h>

#include "Module/ModuleMain_Impl.h"

namespace YLog {

constinit YBase::ModuleMainPtr<ModuleMain, ModuleMain_Impl> gModuleMainPtr;

namespace {

/// Makes a fork wait while the module is being started or stopped.
class StartAndStopGuard final : private YSynch::ForkParticipant {
 public:
  StartAndStopGuard() { Join(); }
  ~StartAndStopGuard() override { Leave(); }

 private:
  void BeforeFork() noexcept override { gModuleMainPtr.LockForFork(); }
  void AfterForkInParent() noexcept override { gModuleMainPtr.UnlockAfterFork(); }
  void AfterForkInChild() noexcept override { gModuleMainPtr.UnlockAfterFork(); }
};

/// Created when the library is loaded, so that no fork can catch it half made. Never destroyed, because an
/// `Initializer` may be used, and a process may fork, while static objects are destroyed.
[[maybe_unused]] const auto* const gsStartAndStopGuard = new StartAndStopGuard;

}  // namespace

Initializer::Initializer() {
  gModuleMainPtr.Initialize();
}

Initializer::~Initializer() {
  gModuleMainPtr.Finalize();
}

}  // namespace YLog

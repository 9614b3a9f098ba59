#pragma once

#include <unistd.h>

#include <atomic>
#include <cassert>
#include <memory>

#include <YBase/CancellationGuard.h>
#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>

namespace YBase {

/// The counted pointer to an object of which a process has one: the first `Initialize` creates it, the last
/// `Finalize` destroys it, and a later `Initialize` creates a new one.
///
/// Constant-initialised, so that it may be used before `main` and by static objects. `Implementation` need
/// only be complete where `Initialize` and `Finalize` are called.
///
/// Threads: start and stop are serialised by a spin lock; a thread that uses the object must keep it started.
/// `Implementation` has an operation `void Stop() noexcept`, which is called under that lock and undoes
/// whatever the object has done to the process, so that another one can be created at once. The constructor
/// and `Stop` call no client code, which could wait for the lock.
///
/// Reentrancy: the object is destroyed after the lock has been released, because that may call client code,
/// which may start the object again, or fork.
template <class Interface, class Implementation>
class ModuleMainPtr {
 public:
  constexpr ModuleMainPtr() noexcept = default;
  ModuleMainPtr(const ModuleMainPtr&) = delete;
  ModuleMainPtr& operator=(const ModuleMainPtr&) = delete;

  /// Failure: what the object's constructor throws is passed on unchanged, and does not count as a start.
  void Initialize() {
    const SpinLock lock(*this);
    if (mUserCount == 0) mpModule.store(new Implementation, std::memory_order_release);
    ++mUserCount;
  }

  /// \pre Matches an `Initialize`. An extra call is refused in debug builds and ignored in others.
  void Finalize() {
    // Declared before the lock, so that it is destroyed after the lock has been released.
    std::unique_ptr<Implementation> stopped;
    const SpinLock lock(*this);
    assert(mUserCount > 0);
    if (mUserCount == 0 || --mUserCount > 0) return;
    // It cannot be found while it is destroyed: client code that it releases may look for it, and must learn
    // that it is gone.
    stopped.reset(static_cast<Implementation*>(mpModule.exchange(nullptr, std::memory_order_acq_rel)));
    stopped->Stop();
  }

  /// Failure: throws `ExceptionImpl<Message>` while the object is not started, which is an error of the
  /// client.
  Interface* operator->() const {
    Interface* module = Get();
    if (module == nullptr) ThrowNotStarted();
    return module;
  }

  /// The object, or null while it is not started.
  Interface* Get() const noexcept { return mpModule.load(std::memory_order_acquire); }

  /// Prevents start and stop during a fork: locked before it, and unlocked in parent and child after it.
  void LockForFork() noexcept { Spin(); }
  void UnlockAfterFork() noexcept { Unspin(); }

 private:
  static constexpr long TAKEN = 0x12345678;

  class SpinLock {
   public:
    explicit SpinLock(ModuleMainPtr& owner) noexcept : mOwner(owner) { mOwner.Spin(); }
    ~SpinLock() { mOwner.Unspin(); }
    SpinLock(const SpinLock&) = delete;
    SpinLock& operator=(const SpinLock&) = delete;

   private:
    ModuleMainPtr& mOwner;
  };

  void Spin() noexcept {
    // `sleep` is a point at which a thread can be cancelled, however short the sleep is.
    const CancellationGuard cancellationGuard;
    // Acquire: this holder sees what the previous one did to the count and the object.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): only a timer is shared, and 0 seconds set none.
    while (mSpin.exchange(TAKEN, std::memory_order_acquire) == TAKEN) ::sleep(0);
  }
  void Unspin() noexcept { mSpin.store(0, std::memory_order_release); }

  [[noreturn]] static void ThrowNotStarted() {
    throw ExceptionImpl<Message>("YBase::ModuleMainPtr::operator->: no Initializer is alive");
  }

  std::atomic<long> mSpin{0};
  unsigned mUserCount = 0;
  std::atomic<Interface*> mpModule{nullptr};
};

}  // namespace YBase

#pragma once

#include <unistd.h>

#include <atomic>
#include <cassert>
#include <memory>

#include <YBase/CancellationGuard.h>
#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>

namespace YBase {

/// The counted door to a process-wide object: the first `Initialize` builds it, the last `Finalize`
/// destroys it, and a later `Initialize` builds a fresh one.
///
/// Constant-initialised, so that it may be used before `main` and by static objects. `Implementation` need
/// only be complete where `Initialize` and `Finalize` are called.
///
/// Threads: start and stop are serialised by a spin word; a thread that uses the object must hold it
/// started. `Implementation` has an operation `void Stop() noexcept`, which runs under that word and undoes
/// whatever the object has done to the process, so that another one can be built at once. The constructor and
/// `Stop` run no client code, which could wait for the word.
///
/// Reentrancy: the object is destroyed with the word given back, because that may run client code, which may
/// start the object again, or fork.
template <class Interface, class Implementation>
class ModuleMainPtr {
 public:
  constexpr ModuleMainPtr() noexcept = default;
  ModuleMainPtr(const ModuleMainPtr&) = delete;
  ModuleMainPtr& operator=(const ModuleMainPtr&) = delete;

  /// Failure: what the object's constructor throws comes out unchanged, and counts as no start.
  void Initialize() {
    const SpinLock lock(*this);
    if (mUserCount == 0) mpModule.store(new Implementation, std::memory_order_release);
    ++mUserCount;
  }

  /// \pre Matches an `Initialize`. One too many is refused in debug builds and ignored in others.
  void Finalize() {
    // Before the lock, so that it is destroyed after the lock was given back.
    std::unique_ptr<Implementation> stopped;
    const SpinLock lock(*this);
    assert(mUserCount > 0);
    if (mUserCount == 0 || --mUserCount > 0) return;
    // No longer reachable while it is destroyed: what it lets go of may be client code that looks for it, and
    // is told that it is gone.
    stopped.reset(static_cast<Implementation*>(mpModule.exchange(nullptr, std::memory_order_acq_rel)));
    stopped->Stop();
  }

  /// Failure: throws `ExceptionImpl<Message>` while the object is not started, which is a client's error.
  Interface* operator->() const {
    Interface* module = Get();
    if (module == nullptr) ThrowNotStarted();
    return module;
  }

  /// The object, or null while it is not started.
  Interface* Get() const noexcept { return mpModule.load(std::memory_order_acquire); }

  /// Keeps start and stop away from a fork: taken before it, given back in parent and child after it.
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
    // A cancellation takes effect in a sleep of any length.
    const CancellationGuard cancellationGuard;
    // Acquire: what the last holder did to the count and the object is seen by this one.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): 0 seconds set no timer, which is what is shared.
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

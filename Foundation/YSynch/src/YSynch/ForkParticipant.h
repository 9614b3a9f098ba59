#pragma once

namespace YSynch {

/// An object that must be notified of forks, because it holds the process's number, or a descriptor that a
/// child must not share.
///
/// Ownership: it is notified from `Join` to `Leave`; the library does not own it. The stacks of the parent's
/// other threads are reused in the child, so a participant must be on the heap or in static storage.
///
/// Threads: the operations are called by the forking thread, and never for two forks at once. `BeforeFork` is
/// called before the locks of the library are taken, and may take any that is not held while this participant
/// leaves. If it takes anything that it keeps during the fork, no thread may wait for that while it holds
/// such a lock, because the fork waits for that thread. One of the other two operations is called later,
/// unless the participant has left in between. They are called while all locks are held, and must not take,
/// create or destroy one. In the child nothing may be allocated.
class ForkParticipant {
 public:
  ForkParticipant(const ForkParticipant&) = delete;
  ForkParticipant& operator=(const ForkParticipant&) = delete;

 protected:
  constexpr ForkParticipant() noexcept = default;
  virtual ~ForkParticipant();

  /// The operations may be called from now on. Called at the end of the constructor of the final class, or
  /// later.
  void Join() noexcept;
  /// Called at the beginning of the destructor of the final class. Waits for a notification that is in
  /// progress.
  void Leave() noexcept;

 private:
  friend class ForkGate;
  friend class IntrusiveList;

  virtual void BeforeFork() noexcept {}
  virtual void AfterForkInParent() noexcept {}
  virtual void AfterForkInChild() noexcept {}

  ForkParticipant* mpPrevious = nullptr;
  ForkParticipant* mpNext = nullptr;
  bool mbIsNotified = false;
};

}  // namespace YSynch

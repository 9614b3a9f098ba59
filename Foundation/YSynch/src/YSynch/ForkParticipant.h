#pragma once

namespace YSynch {

/// Something that must be told of a fork: what holds the process's number, or a descriptor that a child
/// must not share.
///
/// Ownership: told of forks from `Join` to `Leave`; nobody owns it. The stacks of the parent's other threads
/// are used again in the child, so a participant belongs on the heap or in static storage.
///
/// Threads: the calls come from the forking thread, and never for two forks at once. `BeforeFork` comes
/// before the locks of the library are taken, and may take any that is not held while this participant
/// leaves. What it takes and keeps over the fork must not be awaited by a thread that holds such a lock,
/// because the fork waits for that thread. One of the other two calls follows, unless the participant has
/// left in between; they come while all locks are held, and must not take, create or destroy one. In the
/// child nothing may be allocated.
class ForkParticipant {
 public:
  ForkParticipant(const ForkParticipant&) = delete;
  ForkParticipant& operator=(const ForkParticipant&) = delete;

 protected:
  constexpr ForkParticipant() noexcept = default;
  virtual ~ForkParticipant();

  /// Calls may come from now on. The last thing that the constructor of the final class does, or later.
  void Join() noexcept;
  /// The first thing that the destructor of the final class does. Waits for a call that is under way.
  void Leave() noexcept;

 private:
  friend class ForkGate;
  friend class IntrusiveList;

  virtual void BeforeFork() noexcept {}
  virtual void AfterForkInParent() noexcept {}
  virtual void AfterForkInChild() noexcept {}

  ForkParticipant* mpPrevious = nullptr;
  ForkParticipant* mpNext = nullptr;
  bool mbKnowsOfFork = false;
};

}  // namespace YSynch

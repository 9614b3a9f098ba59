#pragma once

#include <atomic>

#include <YSynch/ForkParticipant.h>

namespace YLog {

/// The threads that wait to write to a file which another one is writing to. While there are any, the lock
/// that keeps other processes away need not be given back and taken again between them.
///
/// Threads: any, but for `MayHaveFileLock`.
class WaitingWriters final : private YSynch::ForkParticipant {
 public:
  WaitingWriters() noexcept;
  ~WaitingWriters() override;

  /// The calling thread is about to wait for its turn.
  void Add() noexcept { mCount.fetch_add(1, std::memory_order_relaxed); }
  /// It has its turn.
  void Remove() noexcept { mCount.fetch_sub(1, std::memory_order_relaxed); }

  /// For the thread whose turn it is, at its end: whether it may leave the file's lock to the next one. Not
  /// often in a row, so that other processes get their turn.
  bool MayHaveFileLock() noexcept;

 private:
  /// The other threads are not here.
  void AfterForkInChild() noexcept override;

  // Relaxed: who waits comes off the count once it has the turn, so that a count seen during the turn before
  // is of threads that are still to come.
  std::atomic<int> mCount{0};
  int mTimesInARow = 0;
};

}  // namespace YLog

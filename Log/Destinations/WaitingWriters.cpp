#include "Destinations/WaitingWriters.h"

namespace YLog {

namespace {

constexpr int MAXIMUM_TIMES_IN_A_ROW = 32;

}  // namespace

WaitingWriters::WaitingWriters() noexcept {
  Join();
}

WaitingWriters::~WaitingWriters() {
  Leave();
}

bool WaitingWriters::MayHaveFileLock() noexcept {
  const bool may = mCount.load(std::memory_order_relaxed) > 0 && mTimesInARow < MAXIMUM_TIMES_IN_A_ROW;
  mTimesInARow = may ? mTimesInARow + 1 : 0;
  return may;
}

void WaitingWriters::AfterForkInChild() noexcept {
  mCount.store(0, std::memory_order_relaxed);
}

}  // namespace YLog

#include <unistd.h>

#include <array>
#include <fstream>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <YBase/CallStack.h>

namespace {

long GetResidentKiB() {
  long size = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

/// Touches what every thread needs in any case: pages of its stack and part of the heap.
void TouchStackAndHeap() {
  std::array<volatile char, 64 * 1024> pages;
  for (std::size_t i = 0; i < pages.size(); i += 1024) pages[i] = 1;
  const std::vector<std::string> blocks(100, std::string(300, 'x'));
}

/// How much the process grows while forty concurrent threads take a stack, measured before any of them ends.
long GetGainOfFortyThreadsKiB() {
  constexpr int COUNT = 40;
  std::latch ready(COUNT + 1);
  std::latch go(1);
  std::latch done(COUNT + 1);
  std::latch end(1);
  std::vector<std::jthread> threads;
  for (int i = 0; i != COUNT; ++i) {
    threads.emplace_back([&] {
      TouchStackAndHeap();
      ready.arrive_and_wait();
      go.wait();
      const YBase::CallStack stack = YBase::CreateCallStack();
      done.arrive_and_wait();
      end.wait();
    });
  }
  ready.arrive_and_wait();
  const long before = GetResidentKiB();
  go.count_down();
  done.arrive_and_wait();
  const long gain = GetResidentKiB() - before;
  end.count_down();
  return gain;
}

TEST(CallStackMemory, FortyThreadsNeedHardlyMoreThanOne) {
  TouchStackAndHeap();
  const long before = GetResidentKiB();
  std::jthread([] { YBase::CreateCallStack(); }).join();
  RecordProperty("first_stack_kib", static_cast<int>(GetResidentKiB() - before));
  const long gain = GetGainOfFortyThreadsKiB();
  RecordProperty("forty_threads_kib", static_cast<int>(gain));
  // A few pages per thread. Debug information read by each thread would take megabytes.
  EXPECT_LT(gain, 40L * 50);
}

}  // namespace

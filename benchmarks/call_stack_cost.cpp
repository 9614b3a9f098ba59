// The cost of call stacks in time and memory: the first one of a process, later ones, and forty threads at
// once. A separate program, because a process has only one first stack, and memory matters most.

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <latch>
#include <thread>
#include <vector>

#include <YBase/CallStack.h>

namespace {

using Clock = std::chrono::steady_clock;

long GetResidentKiB() {
  long size = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

/// Prints the cost of the work: the time divided by `count`, and the memory.
template <class Work>
void Measure(const char* name, int count, Work work) {
  const long before = GetResidentKiB();
  const auto begin = Clock::now();
  work();
  const std::chrono::duration<double, std::micro> time = Clock::now() - begin;
  std::printf("%-44s %10.1f us  %+7ld KiB\n", name, time.count() / count, GetResidentKiB() - before);
}

void Take(int count) {
  for (int i = 0; i != count; ++i) {
    const YBase::CallStack stack = YBase::CreateCallStack();
    if (stack.GetFrameCount() <= YBase::CallStack::LIBRARY_FRAME_COUNT) std::puts("An empty stack!");
  }
}

/// The threads end together, so that the memory of all of them is in use at the end of the work.
void TakeInThreads(int threadCount, int count) {
  std::latch done(threadCount);
  std::vector<std::jthread> threads;
  for (int i = 0; i != threadCount; ++i) {
    threads.emplace_back([&done, count] {
      Take(count);
      done.arrive_and_wait();
    });
  }
}

}  // namespace

int main() {
  constexpr int MANY = 10'000;
  constexpr int THREADS = 40;
  Measure("first of the process", 1, [] { Take(1); });
  Measure("first from another place", 1, [] { Take(1); });
  Measure("again from there", MANY, [] { Take(MANY); });
  Measure("first in one thread", 1, [] { TakeInThreads(1, 1); });
  Measure("one each in forty threads", THREADS, [] { TakeInThreads(THREADS, 1); });
  Measure("many each in forty threads", THREADS * MANY / 10, [] { TakeInThreads(THREADS, MANY / 10); });
  return 0;
}

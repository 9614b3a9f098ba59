#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <thread>
#include <vector>

namespace Support {

/// Threads that repeat some work until the object is destroyed. All of them have begun when `Add` returns.
class BusyThreads {
 public:
  BusyThreads() = default;
  BusyThreads(int count, const std::function<void()>& work) { Add(count, work); }
  ~BusyThreads() {
    mbEnough = true;
    for (std::thread& thread : mThreads) thread.join();
  }
  BusyThreads(const BusyThreads&) = delete;
  BusyThreads& operator=(const BusyThreads&) = delete;

  void Add(int count, const std::function<void()>& work) {
    for (int i = 0; i != count; ++i) {
      mThreads.emplace_back([this, work] {
        work();
        ++mBegun;
        while (!mbEnough) work();
      });
    }
    while (mBegun != mThreads.size()) std::this_thread::yield();
  }

 private:
  std::atomic<std::size_t> mBegun = 0;
  std::atomic<bool> mbEnough = false;
  std::vector<std::thread> mThreads;
};

}  // namespace Support

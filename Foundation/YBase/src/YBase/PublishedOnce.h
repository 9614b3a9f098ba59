#pragma once

#include <atomic>
#include <memory>

namespace YBase {

/// A place for an object that is made by the first thread that needs it, and never destroyed: threads may use
/// it while the process ends.
///
/// Without a lock, because a child of a fork could inherit it taken. Threads that come together each make
/// one; the first to finish wins, and the others throw theirs away.
template <class T>
class PublishedOnce {
 public:
  constexpr PublishedOnce() noexcept = default;
  PublishedOnce(const PublishedOnce&) = delete;
  PublishedOnce& operator=(const PublishedOnce&) = delete;

  T& Get() {
    // Acquire: a thread that sees the pointer sees what it points to.
    if (T* published = mpPublished.load(std::memory_order_acquire)) return *published;
    auto own = std::make_unique<T>();
    T* first = nullptr;
    if (mpPublished.compare_exchange_strong(first, own.get(), std::memory_order_acq_rel))
      return *own.release();
    return *first;
  }

 private:
  std::atomic<T*> mpPublished{nullptr};
};

}  // namespace YBase

#pragma once

#include <cstddef>
#include <new>

namespace YSynch {

/// Static storage for an object whose destructor never runs: threads may use it while the process ends.
template <class T>
class NeverDestroyed {
 public:
  NeverDestroyed() { ::new (static_cast<void*>(mStorage)) T; }
  NeverDestroyed(const NeverDestroyed&) = delete;
  NeverDestroyed& operator=(const NeverDestroyed&) = delete;

  T& operator*() noexcept { return *std::launder(reinterpret_cast<T*>(mStorage)); }

 private:
  alignas(T) std::byte mStorage[sizeof(T)];
};

}  // namespace YSynch

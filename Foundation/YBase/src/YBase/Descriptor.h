#pragma once

#include <utility>

namespace YBase {

/// Owns an open file descriptor, or none.
///
/// Threads: belongs to one thread at a time.
class Descriptor {
 public:
  constexpr Descriptor() noexcept = default;
  explicit Descriptor(int descriptor) noexcept : mDescriptor(descriptor) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : mDescriptor(std::exchange(other.mDescriptor, NONE)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(mDescriptor, other.mDescriptor);
    return *this;
  }

  explicit operator bool() const noexcept { return mDescriptor >= 0; }
  int Get() const noexcept { return mDescriptor; }
  void Close() noexcept;

 private:
  static constexpr int NONE = -1;

  int mDescriptor = NONE;
};

}  // namespace YBase

#pragma once

#include <utility>

namespace YBase {

/// An object in static storage whose destructor never runs, because threads may use it while the process
/// ends. Declared `constinit`, it exists before any code runs, and no thread can find it half constructed.
template <class T>
class NeverDestroyed {
 public:
  template <class... Arguments>
  constexpr explicit NeverDestroyed(Arguments&&... arguments) noexcept
      : mObject(std::forward<Arguments>(arguments)...) {}
  // Not defaulted: that would be deleted, because the object may have a destructor.
  constexpr ~NeverDestroyed() {}  // NOLINT(modernize-use-equals-default)
  NeverDestroyed(const NeverDestroyed&) = delete;
  NeverDestroyed& operator=(const NeverDestroyed&) = delete;

  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-union-access): there is no other member.
  constexpr T& operator*() noexcept { return mObject; }
  constexpr T* operator->() noexcept { return &**this; }

 private:
  // A member of a union is not destroyed with it.
  union {
    T mObject;
  };
};

}  // namespace YBase

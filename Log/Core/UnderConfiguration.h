#pragma once

#include <cstring>
#include <utility>

namespace YLog {

/// What the calling thread is showing to the configuration hook at the moment: a new object of an owner that
/// hands out such objects by name. A hook that asks the owner for the same name, because it logs through what
/// it is configuring, is given this object. A second one would be shown to the hook, too, and so on without
/// end.
///
/// Ownership: none. The owner, the name and the object outlive it.
///
/// Threads: created and destroyed by one, which alone finds it.
template <class Owner, class Object>
class UnderConfiguration {
 public:
  UnderConfiguration(const Owner& owner, const char* name, Object& object) noexcept
      : mOwner(owner), mpName(name), mObject(object), mpOuter(std::exchange(spInnermost, this)) {}
  ~UnderConfiguration() { spInnermost = mpOuter; }
  UnderConfiguration(const UnderConfiguration&) = delete;
  UnderConfiguration& operator=(const UnderConfiguration&) = delete;

  /// The object of that owner and name, or null where the calling thread shows none.
  static Object* Find(const Owner& owner, const char* name) noexcept {
    for (const UnderConfiguration* shown = spInnermost; shown != nullptr; shown = shown->mpOuter) {
      if (&shown->mOwner == &owner && std::strcmp(shown->mpName, name) == 0) return &shown->mObject;
    }
    return nullptr;
  }

 private:
  static constinit inline thread_local UnderConfiguration* spInnermost = nullptr;

  const Owner& mOwner;
  const char* const mpName;
  Object& mObject;
  UnderConfiguration* const mpOuter;
};

}  // namespace YLog

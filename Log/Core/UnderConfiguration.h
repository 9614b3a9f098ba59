#pragma once

#include <cstring>
#include <utility>

namespace YLog {

/// The object that the calling thread is showing to the configuration hook: a new one, of an owner that
/// returns such objects by name. If the hook asks the owner for the same name, because it logs through what
/// it is configuring, it receives this object. A new one would be shown to the hook as well, and so on
/// without end.
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

  /// The object of that owner and name, or null if the calling thread shows none.
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

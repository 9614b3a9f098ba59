#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace YBase {

/// Holds one reference to an intrusively counted object, or nothing.
///
/// Ownership: construction from a plain pointer shares the object: it adds a reference. `Adopt` takes over a
/// reference that the caller has added. Destruction releases the reference. Construction from a plain pointer
/// is explicit, because a silent conversion hides who counts.
///
/// Threads: like a plain pointer; two threads may use two of these on the same object.
template <class T>
class SmartPtrI {
 public:
  SmartPtrI() noexcept = default;
  SmartPtrI(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor): null converts, as for T*.
  explicit SmartPtrI(T* object) : mpObject(object) { AddRef(); }
  /// Holds the reference to `object` that the caller has added, and adds none. Null gives null.
  static SmartPtrI Adopt(T* object) noexcept {
    SmartPtrI adopted;
    adopted.mpObject = object;
    return adopted;
  }
  SmartPtrI(const SmartPtrI& other) : mpObject(other.mpObject) { AddRef(); }
  SmartPtrI(SmartPtrI&& other) noexcept : mpObject(std::exchange(other.mpObject, nullptr)) {}

  // Both convert as U* does to T*.
  template <class U>
  // NOLINTNEXTLINE(google-explicit-constructor)
  requires std::is_convertible_v<U*, T*> SmartPtrI(const SmartPtrI<U>& other) : mpObject(other.Get()) {
    AddRef();
  }

  template <class U>
  // NOLINTNEXTLINE(google-explicit-constructor)
  requires std::is_convertible_v<U*, T*> SmartPtrI(SmartPtrI<U>&& other)
      : mpObject(std::exchange(other.mpObject, nullptr)) {}

  /// Takes its argument by value, so that the old object is released after the new one is in place.
  SmartPtrI& operator=(SmartPtrI other) noexcept {
    std::swap(mpObject, other.mpObject);
    return *this;
  }

  ~SmartPtrI() {
    if (mpObject != nullptr) mpObject->Release();
  }

  T* Get() const noexcept { return mpObject; }
  T* operator->() const noexcept { return mpObject; }
  T& operator*() const noexcept { return *mpObject; }
  explicit operator bool() const noexcept { return mpObject != nullptr; }

 private:
  template <class U>
  friend class SmartPtrI;

  void AddRef() const {
    if (mpObject != nullptr) mpObject->AddRef();
  }

  T* mpObject = nullptr;
};

template <class T, class U>
bool operator==(const SmartPtrI<T>& left, const SmartPtrI<U>& right) noexcept {
  return left.Get() == right.Get();
}

template <class T, class U>
bool operator==(const SmartPtrI<T>& left, U* right) noexcept {
  return left.Get() == right;
}

template <class T>
bool operator==(const SmartPtrI<T>& left, std::nullptr_t) noexcept {
  return left.Get() == nullptr;
}

}  // namespace YBase

#pragma once

#include <YBase/Export.h>

namespace YBase {

/// An object that lives as long as somebody holds a reference to it.
///
/// Ownership: the object deletes itself when its last reference is released; nobody else deletes it, which
/// is why the destructor cannot be called through an interface. `SmartPtrI` keeps the books.
///
/// Threads: any thread may add or release a reference that it holds.
///
/// Interfaces derive virtually from this class, so that an object has one count whatever number of
/// interfaces it shows; `YSynch::ReferenceCountedImpl` does the counting.
class YBASE_EXPORT ReferenceCounted {
 public:
  ReferenceCounted(const ReferenceCounted&) = delete;
  ReferenceCounted& operator=(const ReferenceCounted&) = delete;

 protected:
  ReferenceCounted() = default;
  virtual ~ReferenceCounted();

  /// Deletes the object. For implementations, when the last reference is gone.
  void Destroy() const;

 public:
  virtual void AddRef() const = 0;
  /// \pre The caller holds a reference. The object may be gone when this returns.
  virtual void Release() const = 0;
};

}  // namespace YBase

#pragma once

#include <YBase/Export.h>

namespace YBase {

/// An object that exists as long as there is a reference to it.
///
/// Ownership: the object deletes itself when its last reference is released. Nothing else deletes it, so the
/// destructor cannot be called through an interface. `SmartPtrI` adds and releases references.
///
/// Threads: any thread may add or release a reference that it holds.
///
/// Interfaces derive virtually from this class, so that an object has one count, however many interfaces it
/// implements; `YSynch::ReferenceCountedImpl` does the counting.
class YBASE_EXPORT ReferenceCounted {
 public:
  ReferenceCounted(const ReferenceCounted&) = delete;
  ReferenceCounted& operator=(const ReferenceCounted&) = delete;

 protected:
  ReferenceCounted() = default;
  virtual ~ReferenceCounted();

  /// Deletes the object. For implementations, when the last reference has been released.
  void Destroy() const;

 public:
  virtual void AddRef() const = 0;
  /// \pre The caller holds a reference. When this returns, the object may have been deleted.
  virtual void Release() const = 0;
};

}  // namespace YBase

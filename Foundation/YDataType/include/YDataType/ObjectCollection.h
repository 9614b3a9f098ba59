#pragma once

#include <cassert>
#include <utility>
#include <vector>

#include <YBase/SmartPtrI.h>

namespace YDataType {

/// A list of counted objects, in the order in which they were added.
///
/// Ownership: holds a reference to each object. A value: a copy refers to the same objects.
///
/// Threads: like any value.
template <class T>
class ObjectCollection {
 public:
  /// Null is kept like any other entry.
  void Add(YBase::SmartPtrI<T> object) { mObjects.push_back(std::move(object)); }

  unsigned GetCount() const noexcept { return static_cast<unsigned>(mObjects.size()); }

  /// \pre `index` is less than the count. Otherwise debug builds refuse the call, and others return null.
  YBase::SmartPtrI<T> GetItem(unsigned index) const {
    assert(index < mObjects.size());
    return index < mObjects.size() ? mObjects[index] : nullptr;
  }

 private:
  std::vector<YBase::SmartPtrI<T>> mObjects;
};

}  // namespace YDataType

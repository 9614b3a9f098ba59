#pragma once

#include <map>
#include <vector>

#include <YBase/SmartPtrI.h>
#include <YSynch/RWLock.h>

namespace YLog {

/// Objects of one kind by key. Objects are created with no lock held: look up, create, insert.
///
/// Threads: any.
template <class Key, class Object>
class Registry {
 public:
  using Pointer = YBase::SmartPtrI<Object>;

  /// Null if the key is unknown.
  Pointer Find(const Key& key) const {
    const YSynch::RWLock::ReadSmartLock lock(mLock);
    const auto found = mObjects.find(key);
    return found != mObjects.end() ? found->second : nullptr;
  }

  /// Returns the object that the key has from now on. That is not `object` if another thread was first.
  Pointer Insert(const Key& key, const Pointer& object) {
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    return mObjects.try_emplace(key, object).first->second;
  }

  /// In the order of their keys.
  std::vector<Pointer> GetAll() const {
    std::vector<Pointer> all;
    const YSynch::RWLock::ReadSmartLock lock(mLock);
    all.reserve(mObjects.size());
    for (const auto& entry : mObjects) all.push_back(entry.second);
    return all;
  }

 private:
  mutable YSynch::RWLock mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  std::map<Key, Pointer> mObjects YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YLog

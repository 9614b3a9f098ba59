#include "Destinations/CallstackMessageIDs.h"

#include <cassert>

namespace YLog {

void CallstackMessageIDs::Set(const unsigned* ids, unsigned count) {
  assert(ids != nullptr || count == 0);
  std::set<unsigned> newIDs;
  if (ids != nullptr) newIDs.insert(ids, ids + count);
  const YSynch::RWLock::WriteSmartLock lock(mLock);
  mIDs.swap(newIDs);
  mbAny.store(!mIDs.empty(), std::memory_order_relaxed);
}

bool CallstackMessageIDs::Contains(unsigned id) const {
  if (id == 0 || !mbAny.load(std::memory_order_relaxed)) return false;
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  return mIDs.contains(id);
}

}  // namespace YLog

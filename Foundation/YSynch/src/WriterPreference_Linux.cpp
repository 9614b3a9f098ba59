#include <YBase/Check.h>

#include "WriterPreference.h"

namespace YSynch {

void PreferWriters(pthread_rwlockattr_t& attributes) noexcept {
  // The kind that is named for writers without "nonrecursive" prefers readers nevertheless.
  YBase::Check(pthread_rwlockattr_setkind_np(&attributes, PTHREAD_RWLOCK_PREFER_WRITER_NONRECURSIVE_NP));
}

}  // namespace YSynch

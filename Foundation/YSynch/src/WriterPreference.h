#pragma once

#include <pthread.h>

namespace YSynch {

/// Makes a waiting writer precede readers that arrive later.
void PreferWriters(pthread_rwlockattr_t& attributes) noexcept;

}  // namespace YSynch

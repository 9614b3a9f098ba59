#pragma once

#include <pthread.h>

namespace YSynch {

/// Makes a waiting writer go before readers that come later.
void PreferWriters(pthread_rwlockattr_t& attributes) noexcept;

}  // namespace YSynch

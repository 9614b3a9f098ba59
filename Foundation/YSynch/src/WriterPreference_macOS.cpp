#include "WriterPreference.h"

namespace YSynch {

// Writers go first there in any case, and no attribute says so.
void PreferWriters(pthread_rwlockattr_t&) noexcept {}

}  // namespace YSynch

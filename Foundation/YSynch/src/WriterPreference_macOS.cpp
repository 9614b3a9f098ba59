#include "WriterPreference.h"

namespace YSynch {

// Writers always precede readers there, without an attribute.
void PreferWriters(pthread_rwlockattr_t&) noexcept {}

}  // namespace YSynch

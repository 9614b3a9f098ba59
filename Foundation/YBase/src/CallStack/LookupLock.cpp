#include "CallStack/LookupLock.h"

#include <YBase/Check.h>
#include <pthread.h>

namespace YBase {
namespace {

constinit pthread_mutex_t gsMutex = PTHREAD_MUTEX_INITIALIZER;

void Lock() noexcept {
  Check(pthread_mutex_lock(&gsMutex));
}
void Unlock() noexcept {
  Check(pthread_mutex_unlock(&gsMutex));
}

// A fork runs the handlers in the reverse order of their registration. Threads take this lock while they hold
// others, so a fork must take it after those: its handlers are registered before theirs. Only those of the
// `StandardDescriptorsGuard`, which lookups use, are registered still earlier. Where priorities are not
// supported, the order in which the library is linked has the same effect.
[[gnu::constructor(102)]] void RegisterHandlers() noexcept {
  Check(pthread_atfork(Lock, Unlock, Unlock));
}

}  // namespace

LookupLock::LookupLock() noexcept {
  Lock();
}
LookupLock::~LookupLock() {
  Unlock();
}

}  // namespace YBase

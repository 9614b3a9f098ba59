#include "LookupLock.h"

#include <pthread.h>

#include <exception>

namespace YBase {
namespace {

constinit pthread_mutex_t gsMutex = PTHREAD_MUTEX_INITIALIZER;

void Check(int error) noexcept {
  if (error != 0) std::terminate();
}

void Lock() noexcept {
  Check(pthread_mutex_lock(&gsMutex));
}
void Unlock() noexcept {
  Check(pthread_mutex_unlock(&gsMutex));
}

// A fork runs the handlers in the reverse order of their registration. This lock is taken by threads that
// hold others, and must therefore be taken by a fork after those: its handlers are registered before theirs,
// and only that of the StandardDescriptorsGuard, which lookups use, still earlier. Where priorities are
// unknown, the order in which the library is linked does the same.
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

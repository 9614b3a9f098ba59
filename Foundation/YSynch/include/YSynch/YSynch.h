#pragma once

#include <YSynch/AtomicLong.h>
#include <YSynch/CriticalSection.h>
#include <YSynch/ForkParticipant.h>
#include <YSynch/ForkSafeLock.h>
#include <YSynch/LockStackCategory.h>
#include <YSynch/RWLock.h>
#include <YSynch/ReferenceCountedImpl.h>
#include <YSynch/ThreadAnnotations.h>
#include <YSynch/ThreadContext.h>
#include <YSynch/ThreadContextPtr.h>
#include <YSynch/ThreadLocalStorage.h>
#include <YSynch/ThreadSpecificLogHeaders.h>

#pragma once

#include <YSynch/AtomicLong.h>
#include <YSynch/ForkSafeLock.h>
#include <YSynch/LockStackCategory.h>
#include <YSynch/RWLock.h>
#include <YSynch/ReferenceCountedImpl.h>
#include <YSynch/ThreadAnnotations.h>
#include <YSynch/ThreadContext.h>

#pragma once

// Lets clang check at compile time which lock guards what (-Wthread-safety). These are macros because
// attributes that take the guarded member as an argument cannot be written in any other way.

#if defined(__clang__)
#define YSYNCH_ATTRIBUTE(x) __attribute__((x))
#else
#define YSYNCH_ATTRIBUTE(x)
#endif

#define YSYNCH_CAPABILITY(x) YSYNCH_ATTRIBUTE(capability(x))
#define YSYNCH_SCOPED_CAPABILITY YSYNCH_ATTRIBUTE(scoped_lockable)
#define YSYNCH_GUARDED_BY(x) YSYNCH_ATTRIBUTE(guarded_by(x))
#define YSYNCH_REQUIRES(...) YSYNCH_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define YSYNCH_REQUIRES_SHARED(...) YSYNCH_ATTRIBUTE(requires_shared_capability(__VA_ARGS__))
#define YSYNCH_EXCLUDES(...) YSYNCH_ATTRIBUTE(locks_excluded(__VA_ARGS__))
#define YSYNCH_ACQUIRE(...) YSYNCH_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define YSYNCH_ACQUIRE_SHARED(...) YSYNCH_ATTRIBUTE(acquire_shared_capability(__VA_ARGS__))
#define YSYNCH_TRY_ACQUIRE(...) YSYNCH_ATTRIBUTE(try_acquire_capability(__VA_ARGS__))
#define YSYNCH_RELEASE(...) YSYNCH_ATTRIBUTE(release_capability(__VA_ARGS__))
#define YSYNCH_RELEASE_SHARED(...) YSYNCH_ATTRIBUTE(release_shared_capability(__VA_ARGS__))
#define YSYNCH_RELEASE_GENERIC(...) YSYNCH_ATTRIBUTE(release_generic_capability(__VA_ARGS__))
#define YSYNCH_NO_THREAD_SAFETY_ANALYSIS YSYNCH_ATTRIBUTE(no_thread_safety_analysis)

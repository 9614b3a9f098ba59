#pragma once

#include <memory>

#include <YSynch/Export.h>

namespace YLog {
struct ThreadSpecificLogHeaders;
}

namespace YSynch {

/// What a thread adds to the header of each of its messages belongs to the work, not to the thread: code that
/// passes work to another thread reads the headers on the one and installs them on the other. The logging
/// library registers the functions for that, so that this library need not know it.
using ThreadSpecificLogHeadersGetter = std::shared_ptr<YLog::ThreadSpecificLogHeaders> (*)();
using ThreadSpecificLogHeadersSetter = void (*)(YLog::ThreadSpecificLogHeaders*);
using ThreadSpecificLogHeadersUnsetter = void (*)();

/// Threads: any. A later registration replaces an earlier one; null removes it. A call on another thread may
/// still be running after the deregistration.
YSYNCH_EXPORT void RegisterThreadSpecificLogHeadersGetter(ThreadSpecificLogHeadersGetter getter) noexcept;
YSYNCH_EXPORT void RegisterThreadSpecificLogHeadersSetter(ThreadSpecificLogHeadersSetter setter) noexcept;
YSYNCH_EXPORT void RegisterThreadSpecificLogHeadersUnsetter(
    ThreadSpecificLogHeadersUnsetter unsetter) noexcept;
YSYNCH_EXPORT void DeregisterThreadSpecificLogHeadersGetter() noexcept;
YSYNCH_EXPORT void DeregisterThreadSpecificLogHeadersSetter() noexcept;
YSYNCH_EXPORT void DeregisterThreadSpecificLogHeadersUnsetter() noexcept;

/// The calling thread's headers; null if nothing is registered.
///
/// Reentrancy: the registered functions are called with no lock held.
YSYNCH_EXPORT std::shared_ptr<YLog::ThreadSpecificLogHeaders> GetThreadSpecificLogHeaders();

/// Sets the calling thread's headers. Does nothing if nothing is registered.
YSYNCH_EXPORT void SetThreadSpecificLogHeaders(YLog::ThreadSpecificLogHeaders* headers);

/// Removes the calling thread's headers. Does nothing if nothing is registered.
YSYNCH_EXPORT void UnsetThreadSpecificLogHeaders();

}  // namespace YSynch

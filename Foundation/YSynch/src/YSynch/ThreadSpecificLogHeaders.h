#pragma once

#include <functional>
#include <memory>

#include <YSynch/Export.h>

namespace YLog {
struct ThreadSpecificLogHeaders;
}

namespace YSynch {

/// What a thread adds to the header of each of its messages travels with the work, not with the thread:
/// whoever hands work to another thread reads the headers here and installs them there. The logging library
/// registers how, so that this library need not know it.
using ThreadSpecificLogHeadersGetter = std::function<std::shared_ptr<YLog::ThreadSpecificLogHeaders>()>;
using ThreadSpecificLogHeadersSetter = std::function<void(YLog::ThreadSpecificLogHeaders*)>;
using ThreadSpecificLogHeadersUnsetter = std::function<void()>;

/// Threads: any. A later registration replaces an earlier one; an empty function is as good as none. A call
/// that is under way on another thread may outlast the deregistration.
YSYNCH_EXPORT void RegisterThreadSpecificLogHeadersGetter(ThreadSpecificLogHeadersGetter getter);
YSYNCH_EXPORT void RegisterThreadSpecificLogHeadersSetter(ThreadSpecificLogHeadersSetter setter);
YSYNCH_EXPORT void RegisterThreadSpecificLogHeadersUnsetter(ThreadSpecificLogHeadersUnsetter unsetter);
YSYNCH_EXPORT void DeregisterThreadSpecificLogHeadersGetter() noexcept;
YSYNCH_EXPORT void DeregisterThreadSpecificLogHeadersSetter() noexcept;
YSYNCH_EXPORT void DeregisterThreadSpecificLogHeadersUnsetter() noexcept;

/// The calling thread's headers; null where nothing is registered.
///
/// Reentrancy: the registered functions are called with no lock held.
YSYNCH_EXPORT std::shared_ptr<YLog::ThreadSpecificLogHeaders> GetThreadSpecificLogHeaders();

/// Gives the calling thread these headers. Does nothing where nothing is registered.
YSYNCH_EXPORT void SetThreadSpecificLogHeaders(YLog::ThreadSpecificLogHeaders* headers);

/// Takes the calling thread's headers away. Does nothing where nothing is registered.
YSYNCH_EXPORT void UnsetThreadSpecificLogHeaders();

}  // namespace YSynch

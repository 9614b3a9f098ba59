#pragma once

#include <YBase/ReturnString.h>
#include <YLog/Export.h>

namespace YLog {

// Threads: any. Failure: throws `YBase::ExceptionImpl<YBase::Message>` while no `Initializer` is alive.

/// Moves every disk file that was requested by a relative path: the path is resolved against `basePath`
/// again. Null is the empty path.
///
/// New destinations are placed below `basePath` only if the environment variable `HOME` is not set. If it is
/// set, they are placed in the container folder "Library/Containers/.../Data" below `HOME`, whatever the base
/// path is.
///
/// Failure: a file that cannot be moved does not prevent the others from being moved.
YLOG_EXPORT void SetBasePath(const wchar_t* basePath);

/// The name of this server instance, which is in the header of every message: empty until it is set. Meant to
/// be set once, before the first message. Null is the empty name.
YLOG_EXPORT void SetServerInstanceName(const wchar_t* name);
YLOG_EXPORT YBase::ReturnWString GetServerInstanceName();

/// Passes a log registry entry to the Kafka destinations, which ignore it, because there is no broker.
YLOG_EXPORT void UpdateLogRegistryStr(const wchar_t* text);

}  // namespace YLog

#pragma once

namespace Support {

/// Gives the calling process mounts of its own: what it mounts from now on is seen by no other process, and
/// is gone when the process and its children have ended.
///
/// Root does this directly; any other user becomes root of a user namespace of its own, in which nobody else
/// exists.
///
/// Failure: throws std::system_error, where the machine allows neither.
///
/// \pre The process has one thread.
void EnterPrivateMounts();

}  // namespace Support

#pragma once

namespace Support {

/// Gives the calling process its own mounts: what it mounts from now on is invisible to other processes, and
/// is unmounted when the process and its children have ended.
///
/// Root does this directly. Any other user becomes root of a new user namespace, which has no other users.
///
/// Failure: throws std::system_error if the machine allows neither.
///
/// \pre The process has one thread.
void EnterPrivateMounts();

}  // namespace Support

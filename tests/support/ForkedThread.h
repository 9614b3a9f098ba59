#pragma once

#include <sys/types.h>

#include <functional>

namespace Support {

/// Forks. The child does the work and ends at once, without destructors or handlers, and successfully if the
/// work returned true. A child that hangs is killed after a minute.
///
/// The work is done on a thread of the child's own: on the thread that forked the thread sanitizer is blind.
///
/// \pre No other thread uses the heap meanwhile, or starts: the address sanitizer keeps a lock of its own
/// there, which the child would inherit taken.
pid_t StartChild(const std::function<bool()>& work);

/// Whether the child ended successfully.
bool SucceededChild(pid_t child);

/// Both in one.
inline bool SucceedsInChild(const std::function<bool()>& work) {
  return SucceededChild(StartChild(work));
}

}  // namespace Support

#pragma once

#include <sys/types.h>

#include <functional>

namespace Support {

/// Forks. The child does the work and ends at once, without destructors or handlers, and successfully if the
/// work returned true. A child that hangs is killed after a minute.
///
/// The work is done on a new thread of the child, because the thread sanitizer does not observe the thread
/// that forked.
///
/// \pre No other thread uses the heap or starts meanwhile: the address sanitizer takes its own lock for that,
/// which the child would inherit locked.
pid_t StartChild(const std::function<bool()>& work);

/// Whether the child ended successfully.
bool SucceededChild(pid_t child);

/// Starts a child and returns whether it ended successfully.
inline bool SucceedsInChild(const std::function<bool()>& work) {
  return SucceededChild(StartChild(work));
}

}  // namespace Support

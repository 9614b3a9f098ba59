#pragma once

#include <sys/types.h>

#include <filesystem>

namespace Support {

/// Whether the write lock of a file could be taken by a descriptor of one's own, this moment.
bool IsFree(const std::filesystem::path& path);

/// Waits until the child process waits for somebody's lock on a file, or has ended; false where it has ended.
bool WaitsForLock(pid_t child);

}  // namespace Support

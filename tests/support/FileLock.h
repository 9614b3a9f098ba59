#pragma once

#include <sys/types.h>

#include <filesystem>

namespace Support {

/// Whether a new descriptor could take the write lock of the file now.
bool IsFree(const std::filesystem::path& path);

/// Waits until the child process waits for the lock of a file, or has ended; returns false if it has ended.
bool WaitsForLock(pid_t child);

}  // namespace Support

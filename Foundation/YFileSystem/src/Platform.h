#pragma once

#include <chrono>

#include <YFileSystem/FileFacts.h>

/// What each operating system does in its own way. The build picks the one source that fits.
namespace YFileSystem::Platform {

/// Asks about the file at the path, or that a symbolic link there leads to. Returns 0, or -1 with `errno`
/// set.
int QueryPath(const char* path, FileFacts& facts) noexcept;

/// Asks about what has this name itself.
int QueryName(const char* path, FileFacts& facts) noexcept;

/// The same of an open file.
int QueryDescriptor(int descriptor, FileFacts& facts) noexcept;

/// The time since some moment in the past, never going back, to some milliseconds. Costs no system call.
std::chrono::nanoseconds GetCoarseTime() noexcept;

}  // namespace YFileSystem::Platform

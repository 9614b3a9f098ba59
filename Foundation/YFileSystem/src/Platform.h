#pragma once

#include <chrono>

#include <YFileSystem/FileFacts.h>

/// What differs between operating systems. The build chooses the source file that fits.
namespace YFileSystem::Platform {

/// Queries the file at the path; a symbolic link is followed. Returns 0, or -1 with `errno` set.
int QueryPath(const char* path, FileFacts& facts) noexcept;

/// The same without following a symbolic link.
int QueryName(const char* path, FileFacts& facts) noexcept;

/// The same for an open file.
int QueryDescriptor(int descriptor, FileFacts& facts) noexcept;

/// The time since some moment in the past. It never goes back, is exact to a few milliseconds, and costs no
/// system call.
std::chrono::nanoseconds GetCoarseTime() noexcept;

}  // namespace YFileSystem::Platform

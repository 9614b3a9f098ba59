#pragma once

#include <sys/types.h>

#include <cstddef>

namespace Support {

/// The kernel's ID of the calling thread.
pid_t ThreadID();

/// Whether that thread of this process sleeps in the kernel on an address within the lock.
bool IsWaitingOn(pid_t thread, const void* lock, std::size_t size);

/// Whether that thread of this process sleeps in the system call of that number.
bool IsWaitingInSystemCall(pid_t thread, long number);

}  // namespace Support

#pragma once

#include <YBase/ReturnString.h>

namespace YBase {

/// The name of this computer, as the system knows it; empty if it has none.
ReturnWString GetComputerName();

/// The kernel's number of this process.
unsigned GetCurrentProcessID() noexcept;

/// The kernel's number of the calling thread. Each call asks the kernel, so it is right after a fork, too.
unsigned long GetCurrentThreadID() noexcept;

/// The path of the running program in UTF-8; empty if it is unknown.
ReturnString GetExecutablePath();

}  // namespace YBase

#pragma once

#include <cstdint>
#include <string>

/// What each operating system does in its own way. The build picks the one source that fits.
namespace YBase::Platform {

/// The kernel's number of the calling thread, asked for anew.
unsigned long GetThreadID() noexcept;

/// The path of the running program as the system tells it; empty where it does not.
std::string GetExecutablePath();

/// Whether the address lies in the module that holds this function: the library.
bool IsInOwnImage(std::uintptr_t address) noexcept;

/// Takes the signal away if it is pending; never waits.
/// \pre The calling thread blocks it.
void ConsumePendingSignal(int signalNumber) noexcept;

/// A descriptor that holds a number, and that nothing can be read from or written to; -1 where there is none
/// left. Programs that are started do not inherit it.
int OpenPlaceholder() noexcept;
/// Whether a descriptor is such a one.
bool IsPlaceholder(int descriptor) noexcept;

}  // namespace YBase::Platform

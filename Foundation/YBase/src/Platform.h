#pragma once

#include <cstdint>
#include <string>

/// What differs between operating systems. The build chooses the source file that fits.
namespace YBase::Platform {

/// The kernel's ID of the calling thread; never cached.
unsigned long GetThreadID() noexcept;

/// The path of the running program as the system reports it, or empty.
std::string GetExecutablePath();

/// Whether the address is in the module that contains this function: the library.
bool IsInOwnImage(std::uintptr_t address) noexcept;

/// Consumes the signal if it is pending. Never waits.
/// \pre The calling thread blocks it.
void ConsumePendingSignal(int signalNumber) noexcept;

/// A descriptor that occupies a number and can be neither read nor written, or -1 if none is left. Started
/// programs do not inherit it.
int OpenPlaceholder() noexcept;
/// Whether a descriptor is one of those.
bool IsPlaceholder(int descriptor) noexcept;

}  // namespace YBase::Platform

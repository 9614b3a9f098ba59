#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

/// What a call stack is made of: with the debug information of all modules, or with what the system itself
/// tells. The build picks the one source that fits.
namespace YBase::StackFrames {

/// A function under way.
struct Frame {
  std::wstring description;
  bool isLibraryCode = false;  // It comes from a header of the library, and may stand in any module.
};

/// The function in which an address lies, behind those that were inlined into it there. Never empty.
using Frames = std::vector<Frame>;

/// Writes where each function under way stands, innermost first, from the caller of this one or further in:
/// addresses inside the calls, not behind them. Returns how many there are; further ones are left out.
std::size_t GetAddresses(std::span<std::uintptr_t> addresses) noexcept;

/// What stands at each of these addresses.
/// \pre They lie on the calling thread's stack, so that no module of theirs is unloaded meanwhile.
std::vector<std::shared_ptr<const Frames>> Describe(std::span<const std::uintptr_t> addresses);

}  // namespace YBase::StackFrames

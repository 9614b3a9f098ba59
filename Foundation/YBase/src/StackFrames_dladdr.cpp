// With what the system tells by itself: exported functions by name, everything else by module and offset. The
// loader answers at once and always knows what is loaded, so that nothing is kept here, and nothing locked.

#include <execinfo.h>

#include <algorithm>
#include <array>

#include "DynamicSymbol.h"
#include "FrameText.h"
#include "StackFrames.h"

namespace YBase::StackFrames {
namespace {

Frame DescribeAddress(std::uintptr_t address) {
  const DynamicSymbol symbol = FindDynamicSymbol(address);
  return MakeFrame({symbol.name, {}, 0}, {symbol.modulePath, address - symbol.moduleBase});
}

}  // namespace

std::size_t GetAddresses(std::span<std::uintptr_t> addresses) noexcept {
  std::array<void*, 512> found;
  const int count = ::backtrace(found.data(), static_cast<int>(std::min(found.size(), addresses.size())));
  std::transform(found.begin(), found.begin() + count, addresses.begin(), [](const void* returnAddress) {
    // A call may be the last that a function does; what follows then belongs to another one.
    return reinterpret_cast<std::uintptr_t>(returnAddress) - 1;
  });
  return static_cast<std::size_t>(count);
}

std::vector<std::shared_ptr<const Frames>> Describe(std::span<const std::uintptr_t> addresses) {
  std::vector<std::shared_ptr<const Frames>> described;
  described.reserve(addresses.size());
  for (const std::uintptr_t address : addresses) {
    described.push_back(std::make_shared<const Frames>(1, DescribeAddress(address)));
  }
  return described;
}

}  // namespace YBase::StackFrames

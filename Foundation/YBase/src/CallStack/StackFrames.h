#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "CallStack/StackFrame.h"

namespace YBase {

/// The functions at these addresses, each after those that were inlined into it there. There are two
/// implementations, with libbacktrace and with `dladdr` alone; the build chooses one.
///
/// \pre The addresses are on the calling thread's stack, so that their modules stay loaded.
std::vector<StackFrame> FindFrames(std::span<const std::uintptr_t> addresses);

}  // namespace YBase

#pragma once

#include <string>
#include <string_view>

#include "CallStack/StackFrame.h"

namespace YBase {

/// The frame in one line, as `CallStack` promises.
std::wstring DescribeFrame(const StackFrame& frame);

/// Whether a name is one that only the linker uses.
bool IsMangled(std::string_view name) noexcept;

}  // namespace YBase

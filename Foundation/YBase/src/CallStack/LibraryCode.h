#pragma once

#include <string_view>

#include "CallStack/StackFrame.h"

namespace YBase {

/// Whether the function belongs to the library. Code of its headers is compiled into other modules.
bool IsLibraryCode(const StackFrame& frame) noexcept;

/// Whether a file is a header that the library installs.
bool IsLibraryHeader(std::string_view path) noexcept;

}  // namespace YBase

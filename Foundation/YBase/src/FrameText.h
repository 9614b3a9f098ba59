#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "StackFrames.h"

namespace YBase {

/// What is known of a function under way; empty or 0 where it is not.
struct SourceFrame {
  std::string function;  // As the linker knows it, or just its name.
  std::string file;
  int line = 0;
};

/// Where an address lies. Without a module the offset is the address.
struct ModuleOffset {
  std::string modulePath;
  std::uintptr_t offset = 0;
};

/// A function with code of its own.
StackFrames::Frame MakeFrame(const SourceFrame& source, const ModuleOffset& place);

/// One that the compiler put into the code of another.
StackFrames::Frame MakeInlinedFrame(const SourceFrame& source, const ModuleOffset& place);

/// The last part of a path.
std::string_view GetFileName(std::string_view path) noexcept;

/// Whether a name is one that only the linker uses.
bool IsMangled(std::string_view name) noexcept;

/// Whether a function, or one that it is local to, belongs to a namespace of the library. Asked of the
/// mangled name: there the enclosing namespace stands first, whatever result, arguments and template
/// parameters are.
bool IsInLibraryNamespace(std::string_view mangledName) noexcept;

/// Whether a file is a header that the library installs.
bool IsLibraryHeader(std::string_view path) noexcept;

}  // namespace YBase

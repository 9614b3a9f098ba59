#pragma once

#include <link.h>

#include <optional>
#include <string>

namespace YBase {

/// The bytes by which the linker tells one build of a module from another; empty where it gave none.

/// That of the module in memory.
std::string GetBuildID(const dl_phdr_info& module);

/// That of a file; empty for one that is no module or is not there, too. Nothing where it could not be read
/// now.
std::optional<std::string> ReadBuildID(const char* path);

}  // namespace YBase

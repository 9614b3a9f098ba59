#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Support {

/// The whole content of a file; empty if there is no such file.
std::string ReadFile(const std::filesystem::path& path);

/// The lines of a text, without their line feeds, including a last line that does not end in one.
std::vector<std::string> Lines(const std::string& text);

}  // namespace Support

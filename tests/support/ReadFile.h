#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Support {

/// The whole content of a file; empty where there is none.
std::string ReadFile(const std::filesystem::path& path);

/// The lines of a text, without their line feeds. A last line that does not end in one is a line, too.
std::vector<std::string> Lines(const std::string& text);

}  // namespace Support

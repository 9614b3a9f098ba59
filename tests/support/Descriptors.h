#pragma once

#include <filesystem>
#include <vector>

namespace Support {

/// The descriptors by which this process has the file at the path open.
std::vector<int> DescriptorsOf(const std::filesystem::path& path);

}  // namespace Support

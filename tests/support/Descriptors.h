#pragma once

#include <filesystem>
#include <vector>

namespace Support {

/// The descriptors of this process that refer to the file at the path.
std::vector<int> DescriptorsOf(const std::filesystem::path& path);

}  // namespace Support

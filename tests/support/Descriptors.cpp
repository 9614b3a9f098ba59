#include "support/Descriptors.h"

#include <string>
#include <system_error>

namespace Support {

std::vector<int> DescriptorsOf(const std::filesystem::path& path) {
  namespace fs = std::filesystem;
  std::vector<int> descriptors;
  for (const fs::directory_entry& entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code ignored;
    if (fs::equivalent(entry.path(), path, ignored)) {
      descriptors.push_back(std::stoi(entry.path().filename().string()));
    }
  }
  return descriptors;
}

}  // namespace Support

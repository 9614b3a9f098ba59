#include "support/TemporaryDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace Support {

TemporaryDirectory::TemporaryDirectory() {
  std::string name = (std::filesystem::temp_directory_path() / "ylog-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
  mPath = name;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(mPath, ignored);
}

}  // namespace Support

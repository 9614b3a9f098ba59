#pragma once

#include <filesystem>
#include <string>

namespace Support {

/// A new, empty folder that the destructor deletes with all its content.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& Path() const { return mPath; }
  /// The path of something in it, for operations that take wide characters.
  std::wstring Wide(const std::string& name) const { return (mPath / name).wstring(); }

 private:
  std::filesystem::path mPath;
};

}  // namespace Support

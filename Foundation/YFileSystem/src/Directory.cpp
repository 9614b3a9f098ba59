#include <YFileSystem/Directory.h>

#include <filesystem>
#include <system_error>

#include <YBase/TextConversion.h>

#include "Failure.h"

namespace YFileSystem::Directory {

void Create(const wchar_t* path, bool withParents) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::Directory::Create";
  const std::filesystem::path directory = YBase::WideCharToUTF8(path);
  std::error_code error;
  if (withParents) {
    std::filesystem::create_directories(directory, error);
  } else {
    std::filesystem::create_directory(directory, error);
  }
  if (error) ThrowFailure(FUNCTION_NAME, "create", directory.native(), error.message());
}

}  // namespace YFileSystem::Directory

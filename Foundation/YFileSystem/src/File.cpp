#include <YFileSystem/File.h>

#include <cerrno>
#include <string>

#include <YBase/TextConversion.h>

#include "Failure.h"
#include "FileOperations.h"

namespace YFileSystem::File {

namespace {

/// Returns 0 if there is nothing at the path, otherwise the error number.
int Remove(const std::string& path) noexcept {
  if (FileOperations::GetCurrent().Unlink(path.c_str()) == 0) return 0;
  return errno == ENOENT || errno == ENOTDIR ? 0 : errno;
}

}  // namespace

std::optional<FileFacts> Query(const wchar_t* path) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::File::Query";
  const std::string file = YBase::WideCharToUTF8(path);
  FileFacts facts;
  if (FileOperations::Call(&FileOperations::QueryName, file.c_str(), facts) == 0) {
    return facts;
  }
  if (errno == ENOENT) return std::nullopt;
  ThrowFailure(FUNCTION_NAME, "query", file, errno);
}

void Delete(const wchar_t* path) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::File::Delete";
  const std::string file = YBase::WideCharToUTF8(path);
  if (const int error = Remove(file)) ThrowFailure(FUNCTION_NAME, "delete", file, error);
}

void Move(const wchar_t* from, const wchar_t* to) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::File::Move";
  const std::string source = YBase::WideCharToUTF8(from);
  const std::string target = YBase::WideCharToUTF8(to);
  if (FileOperations::GetCurrent().Rename(source.c_str(), target.c_str()) == 0) return;
  const int error = errno;
  ThrowFailure(FUNCTION_NAME, "move", source + "' to '" + target, error);
}

}  // namespace YFileSystem::File

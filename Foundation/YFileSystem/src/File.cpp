#include <YFileSystem/File.h>

#include <fcntl.h>

#include <cerrno>
#include <string>

#include <YBase/TextConversion.h>

#include "Failure.h"
#include "FileOperations.h"

namespace YFileSystem::File {

namespace {

/// Returns 0 where nothing stands at the path any more, else the error number.
int Remove(const std::string& path) noexcept {
  if (FileOperations::GetCurrent().Unlink(path.c_str()) == 0) return 0;
  return errno == ENOENT || errno == ENOTDIR ? 0 : errno;
}

int OpenNew(const std::string& path) noexcept {
  constexpr int FLAGS = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  int descriptor;
  do {
    descriptor = FileOperations::GetCurrent().Open(path.c_str(), FLAGS, NEW_FILE_MODE);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

}  // namespace

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

int OpenDescriptor(const wchar_t* path, OpenMode, ShareMode) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::File::OpenDescriptor";
  // Another process may put something at the path between the two calls; not for ever.
  constexpr int MAXIMUM_ATTEMPTS = 5;
  const std::string file = YBase::WideCharToUTF8(path);
  for (int attempt = 1;; ++attempt) {
    if (const int error = Remove(file)) ThrowFailure(FUNCTION_NAME, "replace", file, error);
    const int descriptor = OpenNew(file);
    if (descriptor >= 0) return descriptor;
    const int error = errno;
    if (error != EEXIST || attempt == MAXIMUM_ATTEMPTS) ThrowFailure(FUNCTION_NAME, "create", file, error);
  }
}

}  // namespace YFileSystem::File

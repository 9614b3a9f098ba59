#pragma once

#include <cerrno>
#include <functional>
#include <string_view>
#include <utility>

#include "support/FileOperationsWrapper.h"

namespace Support {

/// The system's file operations, with a function that is called before each call that can fail. It returns
/// the error number with which the call must fail, or 0. These are the current operations during its
/// lifetime.
class FileCallHook final : public FileOperationsWrapper {
 public:
  using Function = std::function<int(std::string_view call)>;

  explicit FileCallHook(Function before) : mBefore(std::move(before)) {}

  int Open(const char* path, int flags, mode_t mode) noexcept override {
    return Fails("open") ? -1 : FileOperationsWrapper::Open(path, flags, mode);
  }
  int Lock(int descriptor, int operation) noexcept override {
    return Fails("lock") ? -1 : FileOperationsWrapper::Lock(descriptor, operation);
  }
  ssize_t ReadAt(int descriptor, char* buffer, std::size_t count, std::uint64_t position) noexcept override {
    return Fails("read") ? -1 : FileOperationsWrapper::ReadAt(descriptor, buffer, count, position);
  }
  ssize_t Write(int descriptor, const char* text, std::size_t count) noexcept override {
    return Fails("write") ? -1 : FileOperationsWrapper::Write(descriptor, text, count);
  }
  int Truncate(int descriptor, std::uint64_t size) noexcept override {
    return Fails("truncate") ? -1 : FileOperationsWrapper::Truncate(descriptor, size);
  }
  int ChangePermissions(int descriptor, mode_t permissions) noexcept override {
    return Fails("change permissions") ? -1
                                       : FileOperationsWrapper::ChangePermissions(descriptor, permissions);
  }
  int ChangeOwner(int descriptor, uid_t owner, gid_t group) noexcept override {
    return Fails("change owner") ? -1 : FileOperationsWrapper::ChangeOwner(descriptor, owner, group);
  }
  int Rename(const char* from, const char* to) noexcept override {
    return Fails("rename") ? -1 : FileOperationsWrapper::Rename(from, to);
  }
  int Unlink(const char* path) noexcept override {
    return Fails("unlink") ? -1 : FileOperationsWrapper::Unlink(path);
  }
  int QueryPath(const char* path, YFileSystem::FileFacts& facts) noexcept override {
    return Fails("query path") ? -1 : FileOperationsWrapper::QueryPath(path, facts);
  }
  int QueryName(const char* path, YFileSystem::FileFacts& facts) noexcept override {
    return Fails("query name") ? -1 : FileOperationsWrapper::QueryName(path, facts);
  }
  int QueryDescriptor(int descriptor, YFileSystem::FileFacts& facts) noexcept override {
    return Fails("query descriptor") ? -1 : FileOperationsWrapper::QueryDescriptor(descriptor, facts);
  }

 private:
  bool Fails(std::string_view call) noexcept {
    const int error = mBefore(call);
    if (error != 0) errno = error;
    return error != 0;
  }

  const Function mBefore;
  const ScopedFileOperations mScope{*this};
};

}  // namespace Support

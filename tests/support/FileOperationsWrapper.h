#pragma once

#include "Foundation/YFileSystem/src/FileOperations.h"

// For programs that link the object libraries.

namespace Support {

/// Passes every call on to the file operations that were current when it was constructed. A test derives from
/// it and overrides the calls that it counts or makes fail.
class FileOperationsWrapper : public YFileSystem::FileOperations {
 public:
  int Open(const char* path, int flags, mode_t mode) noexcept override {
    return mNext.Open(path, flags, mode);
  }
  int Lock(int descriptor, int operation) noexcept override { return mNext.Lock(descriptor, operation); }
  ssize_t ReadAt(int descriptor, char* buffer, std::size_t count, std::uint64_t position) noexcept override {
    return mNext.ReadAt(descriptor, buffer, count, position);
  }
  ssize_t Write(int descriptor, const char* text, std::size_t count) noexcept override {
    return mNext.Write(descriptor, text, count);
  }
  int Truncate(int descriptor, std::uint64_t size) noexcept override {
    return mNext.Truncate(descriptor, size);
  }
  int ChangePermissions(int descriptor, mode_t permissions) noexcept override {
    return mNext.ChangePermissions(descriptor, permissions);
  }
  int ChangeOwner(int descriptor, uid_t owner, gid_t group) noexcept override {
    return mNext.ChangeOwner(descriptor, owner, group);
  }
  int Rename(const char* from, const char* to) noexcept override { return mNext.Rename(from, to); }
  int Unlink(const char* path) noexcept override { return mNext.Unlink(path); }
  int QueryPath(const char* path, YFileSystem::FileFacts& facts) noexcept override {
    return mNext.QueryPath(path, facts);
  }
  int QueryName(const char* path, YFileSystem::FileFacts& facts) noexcept override {
    return mNext.QueryName(path, facts);
  }
  int QueryDescriptor(int descriptor, YFileSystem::FileFacts& facts) noexcept override {
    return mNext.QueryDescriptor(descriptor, facts);
  }
  std::uint64_t GetFileSizeLimit() noexcept override { return mNext.GetFileSizeLimit(); }
  std::chrono::nanoseconds GetCoarseTime() noexcept override { return mNext.GetCoarseTime(); }

 protected:
  FileOperationsWrapper() noexcept : mNext(GetCurrent()) {}
  ~FileOperationsWrapper() = default;

 private:
  YFileSystem::FileOperations& mNext;
};

/// Makes file operations the current ones during its lifetime.
class ScopedFileOperations {
 public:
  explicit ScopedFileOperations(YFileSystem::FileOperations& operations) noexcept
      : mPrevious(YFileSystem::FileOperations::SetCurrent(operations)) {}
  /// \pre No other thread uses them any more.
  ~ScopedFileOperations() { YFileSystem::FileOperations::SetCurrent(mPrevious); }
  ScopedFileOperations(const ScopedFileOperations&) = delete;
  ScopedFileOperations& operator=(const ScopedFileOperations&) = delete;

 private:
  YFileSystem::FileOperations& mPrevious;
};

}  // namespace Support

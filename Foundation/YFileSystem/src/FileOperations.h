#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdint>

#include <YBase/Uninterrupted.h>
#include <YFileSystem/FileFacts.h>

namespace YFileSystem {

/// The owner may write and the group may read, less the process's umask: a log may contain confidential data.
inline constexpr mode_t NEW_FILE_MODE = S_IRUSR | S_IWUSR | S_IRGRP;

/// The calls to the operating system that this library makes about files. White-box tests replace them, to
/// count them and to make them fail.
///
/// Ownership: the caller that replaces the operations keeps the new ones alive while they are in use.
///
/// Threads: any. A thread that has just read which operations are in use may still call ones that were
/// replaced. The calling thread must not be cancellable (`YBase::CancellationGuard`).
///
/// Failure: as for system calls: -1 is returned and `errno` is set. An interrupted call is not repeated here.
class FileOperations {
 public:
  FileOperations(const FileOperations&) = delete;
  FileOperations& operator=(const FileOperations&) = delete;

  virtual int Open(const char* path, int flags, mode_t mode) noexcept = 0;
  virtual int Lock(int descriptor, int operation) noexcept = 0;
  virtual ssize_t ReadAt(int descriptor, char* buffer, std::size_t count,
                         std::uint64_t position) noexcept = 0;
  virtual ssize_t Write(int descriptor, const char* text, std::size_t count) noexcept = 0;
  virtual int Truncate(int descriptor, std::uint64_t size) noexcept = 0;
  virtual int ChangePermissions(int descriptor, mode_t permissions) noexcept = 0;
  virtual int ChangeOwner(int descriptor, uid_t owner, gid_t group) noexcept = 0;
  virtual int Rename(const char* from, const char* to) noexcept = 0;
  virtual int Unlink(const char* path) noexcept = 0;
  /// Follows symbolic links.
  virtual int QueryPath(const char* path, FileFacts& facts) noexcept = 0;
  /// Does not follow them.
  virtual int QueryName(const char* path, FileFacts& facts) noexcept = 0;
  virtual int QueryDescriptor(int descriptor, FileFacts& facts) noexcept = 0;
  /// The size above which this process may not write to a file. Cannot fail.
  virtual std::uint64_t GetFileSizeLimit() noexcept = 0;
  /// The time since some moment in the past, never going back. Costs no system call; cannot fail.
  virtual std::chrono::nanoseconds GetCoarseTime() noexcept = 0;

  static FileOperations& GetCurrent() noexcept;
  /// Makes one of the calls, and repeats it as long as a signal interrupts it.
  template <class Operation, class... Arguments>
  static auto Call(Operation operation, Arguments&&... arguments) noexcept {
    return YBase::Uninterrupted([&] { return (GetCurrent().*operation)(arguments...); });
  }
  /// Returns the operations that were replaced.
  static FileOperations& SetCurrent(FileOperations& operations) noexcept;

 protected:
  constexpr FileOperations() noexcept = default;
  ~FileOperations() = default;
};

}  // namespace YFileSystem

#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdint>

#include <YBase/Uninterrupted.h>
#include <YFileSystem/FileFacts.h>

namespace YFileSystem {

/// The owner writes and the group reads, less what the process's umask takes away: a log may hold what is
/// nobody else's business.
inline constexpr mode_t NEW_FILE_MODE = S_IRUSR | S_IWUSR | S_IRGRP;

/// The calls to the operating system that this library makes about files. White-box tests put others in their
/// place, to count them and to let them fail.
///
/// Ownership: whoever replaces the current operations keeps the new ones alive while they are current.
///
/// Threads: any; replaced ones may still be called by a thread that was on its way to them. All calls
/// expect a thread that cannot be cancelled (`YBase::CancellationGuard`).
///
/// Failure: as the system's: -1 is returned, and `errno` says why. An interrupted call is not repeated here.
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
  /// Makes one of the calls by the current operations, and again as long as a signal interrupts it.
  template <class Operation, class... Arguments>
  static auto Call(Operation operation, Arguments&&... arguments) noexcept {
    return YBase::Uninterrupted([&] { return (GetCurrent().*operation)(arguments...); });
  }
  /// Returns those that are replaced.
  static FileOperations& SetCurrent(FileOperations& operations) noexcept;

 protected:
  constexpr FileOperations() noexcept = default;
  ~FileOperations() = default;
};

}  // namespace YFileSystem

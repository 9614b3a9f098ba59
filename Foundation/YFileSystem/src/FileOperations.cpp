#include "FileOperations.h"

#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <limits>

#include <YBase/OpenDescriptor.h>

#include "Platform.h"

namespace YFileSystem {

namespace {

class SystemFileOperations final : public FileOperations {
 public:
  constexpr SystemFileOperations() noexcept = default;

  int Open(const char* path, int flags, mode_t mode) noexcept override {
    return YBase::OpenDescriptor(path, flags, mode);
  }
  int Lock(int descriptor, int operation) noexcept override { return ::flock(descriptor, operation); }
  ssize_t ReadAt(int descriptor, char* buffer, std::size_t count, std::uint64_t position) noexcept override {
    return ::pread(descriptor, buffer, count, static_cast<off_t>(position));
  }
  ssize_t Write(int descriptor, const char* text, std::size_t count) noexcept override {
    return ::write(descriptor, text, count);
  }
  int Truncate(int descriptor, std::uint64_t size) noexcept override {
    return ::ftruncate(descriptor, static_cast<off_t>(size));
  }
  int ChangePermissions(int descriptor, mode_t permissions) noexcept override {
    return ::fchmod(descriptor, permissions);
  }
  int ChangeOwner(int descriptor, uid_t owner, gid_t group) noexcept override {
    return ::fchown(descriptor, owner, group);
  }
  int Rename(const char* from, const char* to) noexcept override { return std::rename(from, to); }
  int Unlink(const char* path) noexcept override { return ::unlink(path); }
  int QueryPath(const char* path, FileFacts& facts) noexcept override {
    return Platform::QueryPath(path, facts);
  }
  int QueryName(const char* path, FileFacts& facts) noexcept override {
    return Platform::QueryName(path, facts);
  }
  int QueryDescriptor(int descriptor, FileFacts& facts) noexcept override {
    return Platform::QueryDescriptor(descriptor, facts);
  }
  std::uint64_t GetFileSizeLimit() noexcept override {
    rlimit limit;
    if (::getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
      return std::numeric_limits<std::uint64_t>::max();
    }
    return limit.rlim_cur;
  }
  std::chrono::nanoseconds GetCoarseTime() noexcept override { return Platform::GetCoarseTime(); }
};

// Both are constant-initialised and never destroyed: messages may be logged before `main` and after it.
constinit SystemFileOperations gsSystemFileOperations;
constinit std::atomic<FileOperations*> gspCurrentFileOperations{&gsSystemFileOperations};

}  // namespace

// Acquire and release: a thread that finds the operations finds them complete.
FileOperations& FileOperations::GetCurrent() noexcept {
  return *gspCurrentFileOperations.load(std::memory_order_acquire);
}

FileOperations& FileOperations::SetCurrent(FileOperations& operations) noexcept {
  return *gspCurrentFileOperations.exchange(&operations, std::memory_order_acq_rel);
}

}  // namespace YFileSystem

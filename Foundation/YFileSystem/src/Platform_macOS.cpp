#include "Platform.h"

#include <sys/stat.h>

#include <ctime>

namespace YFileSystem::Platform {

namespace {

FileFacts::Type TypeOf(mode_t mode) noexcept {
  if (S_ISREG(mode)) return FileFacts::Type::REGULAR;
  if (S_ISDIR(mode)) return FileFacts::Type::DIRECTORY;
  return FileFacts::Type::OTHER;
}

FileFacts FactsOf(const struct stat& status) noexcept {
  return {TypeOf(status.st_mode),
          {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)},
          static_cast<std::uint64_t>(status.st_size),
          static_cast<unsigned>(status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)),
          status.st_uid,
          status.st_gid};
}

}  // namespace

int QueryPath(const char* path, FileFacts& facts) noexcept {
  struct stat status;
  if (::stat(path, &status) != 0) return -1;
  facts = FactsOf(status);
  return 0;
}

int QueryName(const char* path, FileFacts& facts) noexcept {
  struct stat status;
  if (::lstat(path, &status) != 0) return -1;
  facts = FactsOf(status);
  return 0;
}

int QueryDescriptor(int descriptor, FileFacts& facts) noexcept {
  struct stat status;
  if (::fstat(descriptor, &status) != 0) return -1;
  facts = FactsOf(status);
  return 0;
}

std::chrono::nanoseconds GetCoarseTime() noexcept {
  return std::chrono::nanoseconds(::clock_gettime_nsec_np(CLOCK_MONOTONIC_RAW_APPROX));
}

}  // namespace YFileSystem::Platform

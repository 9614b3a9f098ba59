#include "RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace YBase {
namespace {

int CheckIsRegular(int descriptor) noexcept {
  struct stat status;
  if (::fstat(descriptor, &status) != 0) return errno;
  return S_ISREG(status.st_mode) ? 0 : EINVAL;
}

}  // namespace

RegularFile::RegularFile(const char* path) noexcept
    : mDescriptor(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
  mError = mDescriptor < 0 ? errno : CheckIsRegular(mDescriptor);
  if (mError != 0) Close();
}

RegularFile::~RegularFile() {
  Close();
}

bool RegularFile::Read(void* data, std::size_t size, std::uint64_t offset) const noexcept {
  return ReadAll(mDescriptor, data, size, offset) == 0;
}

void RegularFile::Close() noexcept {
  const int descriptor = Release();
  if (descriptor >= 0) ::close(descriptor);
}

int ReadAll(int descriptor, void* data, std::size_t size, std::uint64_t offset) noexcept {
  auto* rest = static_cast<char*>(data);
  while (size != 0) {
    const ssize_t count = ::pread(descriptor, rest, size, static_cast<off_t>(offset));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) return EIO;  // The file is shorter than it was.
    rest += count;
    size -= static_cast<std::size_t>(count);
    offset += static_cast<std::size_t>(count);
  }
  return 0;
}

bool IsShortage(int error) noexcept {
  return error == EMFILE || error == ENFILE || error == ENOMEM;
}

}  // namespace YBase

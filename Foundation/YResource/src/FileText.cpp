#include "FileText.h"

#include <YBase/Descriptor.h>
#include <YBase/Uninterrupted.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

#include "CatalogueFaults.h"

namespace YResource {

namespace {

// Far larger than any catalogue: a larger file is there by mistake and would delay the start of a server.
constexpr off_t MAXIMUM_SIZE = 16 << 20;

std::string DescribeError() {
  return "cannot be read: " + std::system_category().message(errno);
}

/// Returns how much of `buffer` the file has filled, or a negative number for a failure.
ssize_t ReadAll(int descriptor, std::string& buffer) {
  ssize_t length = 0;
  while (true) {
    const auto begin = static_cast<std::size_t>(length);
    const ssize_t count = YBase::Uninterrupted(
        [&] { return ::read(descriptor, buffer.data() + begin, buffer.size() - begin); });
    if (count <= 0) return count < 0 ? count : length;
    length += count;
  }
}

}  // namespace

std::optional<std::string> ReadFileText(const std::string& path, CatalogueFaults& faults) {
  const auto refuse = [&](const std::string& reason) {
    faults.Add(path, 0, reason);
    return std::nullopt;
  };
  const YBase::Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status;
  if (!file || ::fstat(file.Get(), &status) != 0) return refuse(DescribeError());
  if (!S_ISREG(status.st_mode)) return refuse("is not a regular file");
  if (status.st_size > MAXIMUM_SIZE) return refuse("is larger than 16 MiB");
  // One byte more than the file has. It is filled only if the file grows.
  std::string text(static_cast<std::size_t>(status.st_size) + 1, '\0');
  const ssize_t length = ReadAll(file.Get(), text);
  if (length < 0) return refuse(DescribeError());
  if (length > status.st_size) return refuse("grew while it was read");
  text.resize(static_cast<std::size_t>(length));
  return text;
}

}  // namespace YResource

#include "FileText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

namespace YResource {

namespace {

// Far beyond any catalogue: what is larger is something else by mistake.
constexpr std::size_t MAXIMUM_SIZE = 64 << 20;

class Descriptor {
 public:
  explicit Descriptor(const std::string& path)
      : mDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  ~Descriptor() {
    if (mDescriptor >= 0) ::close(mDescriptor);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Get() const noexcept { return mDescriptor; }

 private:
  const int mDescriptor;
};

std::string DescribeError() {
  return "cannot be read: " + std::system_category().message(errno);
}

/// Appends what comes next. Returns how much that was, or a negative number for a failure.
ssize_t ReadPiece(int descriptor, std::string& text) {
  char piece[65536];
  ssize_t count = 0;
  do {
    count = ::read(descriptor, piece, sizeof piece);
  } while (count < 0 && errno == EINTR);
  if (count > 0) text.append(piece, static_cast<std::size_t>(count));
  return count;
}

}  // namespace

bool ReadFileText(const std::string& path, std::string& text) {
  const Descriptor file(path);
  struct stat status;
  if (file.Get() < 0 || ::fstat(file.Get(), &status) != 0) {
    text = DescribeError();
    return false;
  }
  if (!S_ISREG(status.st_mode)) {
    text = "is no regular file";
    return false;
  }
  text.clear();
  ssize_t count = 0;
  while (text.size() <= MAXIMUM_SIZE && (count = ReadPiece(file.Get(), text)) > 0) {
  }
  if (count == 0) return true;
  text = count < 0 ? DescribeError() : "is larger than 64 MiB";
  return false;
}

}  // namespace YResource

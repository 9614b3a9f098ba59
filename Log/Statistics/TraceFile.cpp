#include "Statistics/TraceFile.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <utility>

#include <YBase/OpenDescriptor.h>

namespace YLog {

namespace {

std::FILE* OpenForWriting(const char* path) noexcept {
  constexpr mode_t AS_THE_C_LIBRARY = 0666;
  const int descriptor =
      YBase::OpenDescriptor(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, AS_THE_C_LIBRARY);
  if (descriptor < 0) return nullptr;
  std::FILE* const file = ::fdopen(descriptor, "w");
  if (file == nullptr) ::close(descriptor);
  return file;
}

}  // namespace

TraceFile::TraceFile(const std::string& path) noexcept : mpFile(OpenForWriting(path.c_str())) {}

TraceFile::~TraceFile() {
  if (mpFile != nullptr) std::fclose(mpFile);
}

bool TraceFile::Close() noexcept {
  const bool written = std::ferror(mpFile) == 0;
  const bool flushed = std::fclose(std::exchange(mpFile, nullptr)) == 0;
  return written && flushed;
}

}  // namespace YLog

#include "DebugFiles_libbacktrace.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

#include "RegularFile.h"

// NOLINTBEGIN(readability-identifier-naming): these names are given.

namespace {

// Debug information stays in memory, and a host that runs out of it must not do so of logging. Servers with
// all of their libraries have some tens of MiB. A module that does not fit in any more has no lines.
constexpr std::size_t MAX_SIZE_OF_ALL = 256 << 20;

// One thread at a time is let in here: see DebugInformation.
constinit std::size_t gsSizeOfAll = 0;

void* GetMemory(std::size_t size) noexcept {
  void* const memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return memory != MAP_FAILED ? memory : nullptr;
}

}  // namespace

int backtrace_open(const char* path, backtrace_error_callback onError, void* data, int* isMissing) noexcept {
  YBase::RegularFile file(path);
  const bool isNotThere = file.GetError() != 0 && !YBase::IsShortage(file.GetError());
  if (isMissing != nullptr) *isMissing = isNotThere ? 1 : 0;
  const bool isTold = file.GetError() == 0 || (isNotThere && isMissing != nullptr);
  if (!isTold) onError(data, path, file.GetError());
  return file.Release();
}

int backtrace_close(int descriptor, backtrace_error_callback, void*) noexcept {
  // It was only read from: nothing can be lost.
  ::close(descriptor);
  return 1;
}

int backtrace_get_view(backtrace_state*, int descriptor, off_t offset, std::uint64_t size,
                       backtrace_error_callback onError, void* data, backtrace_view* view) noexcept {
  *view = {"", nullptr, 0};
  if (size == 0) return 1;
  if (size > MAX_SIZE_OF_ALL - gsSizeOfAll) {
    onError(data, "too much debug information", EFBIG);
    return 0;
  }
  void* const memory = GetMemory(size);
  const int error = memory == nullptr
                        ? ENOMEM
                        : YBase::ReadAll(descriptor, memory, size, static_cast<std::uint64_t>(offset));
  if (error != 0) {
    if (memory != nullptr) ::munmap(memory, size);
    onError(data, "cannot read", error);
    return 0;
  }
  *view = {memory, memory, size};
  gsSizeOfAll += size;
  return 1;
}

void backtrace_release_view(backtrace_state*, backtrace_view* view, backtrace_error_callback,
                            void*) noexcept {
  if (view->base == nullptr) return;
  ::munmap(view->base, view->len);
  gsSizeOfAll -= view->len;
}

// NOLINTEND(readability-identifier-naming)

#include "DebugFiles_libbacktrace.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <new>

#include "RegularFile.h"

// NOLINTBEGIN(readability-identifier-naming): these names are given.

namespace {

// Debug information stays in memory, and a host that runs out of it must not do so of logging. Servers with
// all of their libraries have some tens of MiB. A module that does not fit in any more has no lines.
constexpr std::size_t MAX_SIZE_OF_ALL = 256 << 20;

/// Stands before each piece of a file that is in memory.
struct alignas(std::max_align_t) Piece {
  std::size_t size = 0;  // Of both.
  Piece* pNext = nullptr;
  Piece* pPrevious = nullptr;
};

// One thread at a time is let in here: see DebugInformation.
constinit Piece* gspFirst = nullptr;
constinit std::size_t gsSizeOfAll = 0;

Piece* MakePiece(std::size_t contentSize) noexcept {
  const std::size_t size = sizeof(Piece) + contentSize;
  void* const memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return nullptr;
  auto* const piece = new (memory) Piece{size, gspFirst};
  if (gspFirst != nullptr) gspFirst->pPrevious = piece;
  gspFirst = piece;
  gsSizeOfAll += size;
  return piece;
}

void Release(Piece* piece) noexcept {
  (piece->pPrevious != nullptr ? piece->pPrevious->pNext : gspFirst) = piece->pNext;
  if (piece->pNext != nullptr) piece->pNext->pPrevious = piece->pPrevious;
  gsSizeOfAll -= piece->size;
  ::munmap(piece, piece->size);
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
  if (size > MAX_SIZE_OF_ALL || gsSizeOfAll > MAX_SIZE_OF_ALL - size) {
    onError(data, "too much debug information", EFBIG);
    return 0;
  }
  Piece* const piece = MakePiece(size);
  if (piece == nullptr) {
    onError(data, "mmap", ENOMEM);
    return 0;
  }
  const int error = YBase::ReadAll(descriptor, piece + 1, size, static_cast<std::uint64_t>(offset));
  if (error != 0) {
    Release(piece);
    onError(data, "pread", error);
    return 0;
  }
  *view = {piece + 1, piece, piece->size};
  return 1;
}

void backtrace_release_view(backtrace_state*, backtrace_view* view, backtrace_error_callback,
                            void*) noexcept {
  if (view->base != nullptr) Release(static_cast<Piece*>(view->base));
}

void YBase::ReleaseDebugFiles() noexcept {
  while (gspFirst != nullptr) Release(gspFirst);
}

// NOLINTEND(readability-identifier-naming)

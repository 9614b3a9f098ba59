#pragma once

// How libbacktrace gets at files. Its own way maps them, for as long as the process lives: once such a file
// is truncated or written over in its place, as copying does, the next stack dies of a bus error. Its own way
// also waits for whoever opens the other end of a pipe that has taken a file's place.
//
// These four functions are those of its internal interface that deal with the file system. The archive has
// each pair in a member of its own, from which nothing else is wanted: what the linker finds here first, it
// does not take from there. The header that declares them is not installed, so they are declared anew. That
// is safe because the build takes no archive but the compiler's own, and refuses it unless a program that
// reads with these has found its own lines (cmake/YLogLibbacktrace.cmake).

#include <backtrace.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>

// NOLINTBEGIN(readability-identifier-naming): these names are given.

/// A piece of a file in memory.
struct backtrace_view {
  const void* data;  // What was asked for.
  void* base;        // What is to be released.
  std::size_t len;   // The size of that.
};

extern "C" {
int backtrace_open(const char* path, backtrace_error_callback onError, void* data, int* isMissing) noexcept;
int backtrace_close(int descriptor, backtrace_error_callback onError, void* data) noexcept;
int backtrace_get_view(backtrace_state* state, int descriptor, off_t offset, std::uint64_t size,
                       backtrace_error_callback onError, void* data, backtrace_view* view) noexcept;
void backtrace_release_view(backtrace_state* state, backtrace_view* view, backtrace_error_callback onError,
                            void* data) noexcept;
}

// NOLINTEND(readability-identifier-naming)

namespace YBase {

/// Gives back the memory of all pieces, if nobody is going to ask for anything in them again.
void ReleaseDebugFiles() noexcept;

}  // namespace YBase

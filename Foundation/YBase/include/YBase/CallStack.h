#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <YBase/Export.h>

namespace YBase {

/// The functions that were under way on a thread when the stack was taken, innermost first, each told in one
/// line: function, file and line where there is debug information (functions that the compiler inlined stand
/// for themselves), the function's name where there are symbols only, and else module and offset:
///
///     orders::Server::Handle(int) at /src/orders/server.cpp:42
///     orders::Server::Handle(int) in liborders.so+0x1a2b
///     liborders.so+0x1a2b
///
/// The offset is one inside the call, so that tools which know the module's debug information name its line.
///
/// The first six frames stand for the library itself, which took the stack; the seventh is the innermost
/// function of the client. A stack deeper than 256 frames is cut there, and one further line says so.
///
/// Ownership: a value; copies share their texts. Threads: like any value.
class YBASE_EXPORT CallStack {
 public:
  /// How many frames stand for the library, whatever the compiler made of it.
  static constexpr unsigned LIBRARY_FRAME_COUNT = 6;

  /// A stack without frames.
  CallStack() = default;

  unsigned GetFrameCount() const noexcept { return static_cast<unsigned>(mFrames.size()); }

  /// One line, without a line break. Valid as long as the stack, or a copy of it.
  /// \pre `index` is less than the count.
  const wchar_t* GetFrameDescription(unsigned index) const noexcept;

 private:
  using Description = std::shared_ptr<const std::wstring>;
  friend YBASE_EXPORT CallStack CreateCallStack();
  explicit CallStack(std::vector<Description> frames) noexcept : mFrames(std::move(frames)) {}

  std::vector<Description> mFrames;
};

/// The stack of the calling thread.
///
/// The first one of a process reads the debug information of its modules, which takes time and memory in
/// proportion to it; what has been found is kept for the next, and for all threads. The files may change
/// afterwards.
///
/// Threads: any, before and after `main` as well. A child of a fork may take one at once, unless another
/// thread was just loading or unloading a module: the C library's list of modules then stays locked in the
/// child. Not in signal handlers.
///
/// Failure: throws `std::bad_alloc`. Missing or broken debug information makes descriptions shorter, and so
/// does what is more than 256 MiB in all. Where descriptors or memory are too short to read it, the next
/// stack tries again.
YBASE_EXPORT CallStack CreateCallStack();

}  // namespace YBase

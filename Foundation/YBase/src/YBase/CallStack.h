#pragma once

#include <string>
#include <utility>
#include <vector>

#include <YBase/Export.h>

namespace YBase {

/// The functions that were active on a thread when the stack was taken, innermost first. Each is described in
/// one line: function, file and line where there is debug information (which also names the functions that
/// the compiler inlined), the function's name where there are only symbols, and otherwise module and offset:
///
///     orders::Server::Handle(int) at /src/orders/server.cpp:42
///     orders::Server::Handle(int) in liborders.so+0x1a2b
///     liborders.so+0x1a2b
///
/// The offset is one inside the call, so tools that have the module's debug information find its line.
///
/// The first six frames represent the library itself, which took the stack; the seventh is the innermost
/// function of the client. A stack deeper than 256 frames is cut there, and one more line says so.
///
/// Ownership: a value. Threads: like any value.
class YBASE_EXPORT CallStack {
 public:
  /// How many frames represent the library, however many the compiler left of it.
  static constexpr unsigned LIBRARY_FRAME_COUNT = 6;

  /// A stack without frames.
  CallStack() = default;

  unsigned GetFrameCount() const noexcept { return static_cast<unsigned>(mFrames.size()); }

  /// One line, without a line break. Valid as long as the stack.
  /// \pre `index` is less than the count.
  const wchar_t* GetFrameDescription(unsigned index) const noexcept;

 private:
  friend YBASE_EXPORT CallStack CreateCallStack();
  explicit CallStack(std::vector<std::wstring> frames) noexcept : mFrames(std::move(frames)) {}

  std::vector<std::wstring> mFrames;
};

/// The stack of the calling thread.
///
/// The first one of a process reads the debug information of all modules, which takes time and memory in
/// proportion to its size. What was read is kept for all threads. The files may be replaced afterwards, but
/// not overwritten in place: they are mapped.
///
/// Threads: any, also before and after `main`. A child of a fork may take one at once, unless another thread
/// was just loading or unloading a module: the C library's list of modules then stays locked in the child.
/// Not in signal handlers.
///
/// Failure: throws `std::bad_alloc`. Missing or broken debug information makes descriptions shorter. If there
/// are not enough descriptors or memory to read it, the next stack tries again.
YBASE_EXPORT CallStack CreateCallStack();

}  // namespace YBase

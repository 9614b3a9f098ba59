#pragma once

namespace YBase {

/// Keeps what is opened as long as it exists from becoming standard input, output or error of a host that has
/// closed these: what the host writes there later must not land in a file of the library's.
///
/// The numbers 0 to 2, as far as they are free, are taken up by descriptors that nothing can be read from or
/// written to, and that no program started meanwhile inherits. At the end they are free again; one that the
/// host has put something else in the place of is left to it. `errno` is left as it is.
///
/// Threads: any; guards may be nested, and exist in several threads at once. A child of a fork has none of
/// the guards of its parent's other threads, and the numbers that they had taken are free in it.
class StandardDescriptorsGuard {
 public:
  StandardDescriptorsGuard() noexcept;
  ~StandardDescriptorsGuard();
  StandardDescriptorsGuard(const StandardDescriptorsGuard&) = delete;
  StandardDescriptorsGuard& operator=(const StandardDescriptorsGuard&) = delete;
};

}  // namespace YBase

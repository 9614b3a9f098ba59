#pragma once

namespace YBase {

/// As long as it exists, no file that is opened becomes the standard input, output or error of a host that
/// has closed these: what the host writes there later must not end up in a file of the library.
///
/// The numbers 0 to 2 that are free are occupied by descriptors that can be neither read nor written and that
/// no program started meanwhile inherits. They are closed at the end, except one that the host has replaced
/// by something else. `errno` is left as it is.
///
/// Threads: any; guards may be nested, and exist on several threads at once. A child of a fork has none of
/// the guards of its parent's other threads, and the numbers that these had occupied are free in the child.
class StandardDescriptorsGuard {
 public:
  StandardDescriptorsGuard() noexcept;
  ~StandardDescriptorsGuard();
  StandardDescriptorsGuard(const StandardDescriptorsGuard&) = delete;
  StandardDescriptorsGuard& operator=(const StandardDescriptorsGuard&) = delete;
};

}  // namespace YBase

#pragma once

#include <chrono>
#include <cstdint>

namespace YFileSystem {

/// The file-size limit of this process, at most a second old: reading it for every record would cost a system
/// call each time.
///
/// Threads: one at a time.
class FileSizeLimit {
 public:
  /// To be called before the first use.
  void Refresh() noexcept;
  /// Whether a file of this size exceeds the limit, so that writing may raise `SIGXFSZ`.
  bool IsPassedBy(std::uint64_t size) noexcept;

 private:
  std::uint64_t mLimit = 0;
  std::chrono::nanoseconds mReadAt{};
};

}  // namespace YFileSystem

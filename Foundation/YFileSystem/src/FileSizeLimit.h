#pragma once

#include <chrono>
#include <cstdint>

namespace YFileSystem {

/// The file-size limit of this process, as it was at most a second ago: asking for it at every record would
/// cost a system call each time.
///
/// Threads: belongs to one at a time.
class FileSizeLimit {
 public:
  /// To be called before the first question.
  void Refresh() noexcept;
  /// Whether a file of this size passes it, so that writing may raise `SIGXFSZ`.
  bool IsPassedBy(std::uint64_t size) noexcept;

 private:
  std::uint64_t mLimit = 0;
  std::chrono::nanoseconds mReadAt{};
};

}  // namespace YFileSystem

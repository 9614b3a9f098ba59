#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace YBase {

/// A regular file, open to be read. Nothing else is opened: a pipe that has taken the file's place could keep
/// the caller waiting for ever, and bytes may be asked of a device that do harm.
class RegularFile {
 public:
  explicit RegularFile(const char* path) noexcept;
  ~RegularFile();
  RegularFile(const RegularFile&) = delete;
  RegularFile& operator=(const RegularFile&) = delete;

  /// Why it is not open; 0 if it is.
  int GetError() const noexcept { return mError; }

  /// Whether all of these bytes are there and were read.
  bool Read(void* data, std::size_t size, std::uint64_t offset) const noexcept;

  /// The descriptor, which is the caller's from now on; -1 if it is not open.
  int Release() noexcept { return std::exchange(mDescriptor, -1); }

 private:
  void Close() noexcept;

  int mDescriptor;
  int mError = 0;
};

/// The same of a file that somebody else opened. Returns 0, or why they were not read.
int ReadAll(int descriptor, void* data, std::size_t size, std::uint64_t offset) noexcept;

/// Whether this is want of descriptors or memory, so that what failed may succeed another time.
bool IsShortage(int error) noexcept;

}  // namespace YBase

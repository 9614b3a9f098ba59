#pragma once

#include <sys/uio.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace YFileSystem {

/// What is still to be written of several texts that follow one another.
///
/// Ownership: of neither the texts nor their list.
class UnwrittenPieces {
 public:
  explicit UnwrittenPieces(std::span<const std::string_view> pieces) noexcept;

  /// Bytes of all of them.
  std::uint64_t GetSize() const noexcept { return mSize; }

  /// Where the next bytes stand: all of them, unless they are in more pieces than there are vectors. Returns
  /// how many vectors it filled.
  int Describe(std::span<iovec> vectors) const noexcept;

  /// Drops so many bytes, which have been written.
  void Advance(std::size_t count) noexcept;

 private:
  std::span<const std::string_view> mPieces;
  std::size_t mWrittenOfFirst = 0;
  std::uint64_t mSize = 0;
};

}  // namespace YFileSystem

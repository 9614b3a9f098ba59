#include "UnwrittenPieces.h"

#include <cassert>

namespace YFileSystem {

UnwrittenPieces::UnwrittenPieces(std::span<const std::string_view> pieces) noexcept : mPieces(pieces) {
  for (const std::string_view piece : pieces) mSize += piece.size();
}

int UnwrittenPieces::Describe(std::span<iovec> vectors) const noexcept {
  std::size_t count = 0;
  std::size_t written = mWrittenOfFirst;
  for (const std::string_view piece : mPieces) {
    if (count == vectors.size()) break;
    const std::string_view rest = piece.substr(written);
    written = 0;
    // The system's structure is for reading, too, and so knows no const.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
    if (!rest.empty()) vectors[count++] = {const_cast<char*>(rest.data()), rest.size()};
  }
  return static_cast<int>(count);
}

void UnwrittenPieces::Advance(std::size_t count) noexcept {
  assert(count <= mSize);
  mSize -= count;
  mWrittenOfFirst += count;
  while (!mPieces.empty() && mWrittenOfFirst >= mPieces.front().size()) {
    mWrittenOfFirst -= mPieces.front().size();
    mPieces = mPieces.subspan(1);
  }
}

}  // namespace YFileSystem

#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace YBase {

/// A text under construction, with space for `InlineCapacity` bytes in the object itself. A longer text is on
/// the heap. Meant for the stack of a function that must not allocate for texts of ordinary length.
///
/// Ownership: neither copied nor moved. Threads: belongs to one thread.
///
/// Failure: `Append` throws `std::bad_alloc` and leaves the text as it was.
template <std::size_t InlineCapacity>
class TextBuffer {
 public:
  // The bytes are written before they are read, so clearing them first would be a waste.
  TextBuffer() noexcept {}  // NOLINT(modernize-use-equals-default)
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;
  ~TextBuffer() = default;

  void Append(std::string_view text) {
    if (text.empty()) return;
    std::memcpy(Extend(text.size()), text.data(), text.size());
  }
  void Append(char character) { *Extend(1) = character; }

  /// Makes room for `count` more bytes, so that appending them cannot fail.
  void Reserve(std::size_t count) {
    if (count > mCapacity - mSize) Grow(count);
  }

  std::string_view View() const noexcept { return {Data(), mSize}; }
  std::size_t Size() const noexcept { return mSize; }
  bool Empty() const noexcept { return mSize == 0; }
  void Clear() noexcept { mSize = 0; }

  /// The text, followed by a NUL that is not part of it. Valid until the next change.
  const char* CStr() {
    Append('\0');
    --mSize;
    return Data();
  }

 private:
  const char* Data() const noexcept { return mHeap ? mHeap.get() : mInline; }
  char* Data() noexcept { return mHeap ? mHeap.get() : mInline; }

  char* Extend(std::size_t count) {
    Reserve(count);
    char* end = Data() + mSize;
    mSize += count;
    return end;
  }

  void Grow(std::size_t count) {
    const std::size_t capacity = (mSize + count) * 2;
    auto heap = std::make_unique<char[]>(capacity);
    std::memcpy(heap.get(), Data(), mSize);
    mHeap = std::move(heap);
    mCapacity = capacity;
  }

  std::size_t mSize = 0;
  std::size_t mCapacity = InlineCapacity;
  std::unique_ptr<char[]> mHeap;
  char mInline[InlineCapacity];
};

}  // namespace YBase

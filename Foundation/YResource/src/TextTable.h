#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace YResource {

/// Texts by ID and language.
///
/// Threads: one at a time may set texts, and any number may look up meanwhile: entries are only ever added,
/// each complete before it can be seen, in front of the one that it supersedes. Nothing is freed before the
/// table is, which is what makes lookups safe without a lock.
class TextTable {
 public:
  /// The fastest for up to so many texts; more are slower, but no less correct.
  explicit TextTable(std::size_t expectedTexts);
  ~TextTable();
  TextTable(const TextTable&) = delete;
  TextTable& operator=(const TextTable&) = delete;

  /// An empty text is as good as none.
  ///
  /// Failure: `std::bad_alloc`; the table stays as it was.
  void Set(unsigned id, unsigned short language, std::string_view text);

  /// The text in just this language, or null. Valid as long as the table.
  const std::string* Find(unsigned id, unsigned short language) const noexcept;

 private:
  struct Entry {
    const unsigned id;
    const unsigned short language;
    const std::string text;
    const Entry* const older;
  };

  const Entry* FindEntry(unsigned id, unsigned short language) const noexcept;
  std::atomic<const Entry*>& GetBucket(unsigned id, unsigned short language) const noexcept;

  const std::size_t mBucketCount;
  const std::unique_ptr<std::atomic<const Entry*>[]> mpBuckets;
};

}  // namespace YResource

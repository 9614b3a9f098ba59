#include "TextTable.h"

#include <bit>

namespace YResource {

// A power of two, so that a mask picks the bucket.
TextTable::TextTable(std::size_t expectedTexts)
    : mBucketCount(std::bit_ceil(expectedTexts)),
      mpBuckets(std::make_unique<std::atomic<const Entry*>[]>(mBucketCount)) {}

TextTable::~TextTable() {
  for (std::size_t i = 0; i < mBucketCount; ++i) {
    const Entry* entry = mpBuckets[i].load(std::memory_order_relaxed);
    while (entry != nullptr) {
      const std::unique_ptr<const Entry> gone(entry);
      entry = entry->older;
    }
  }
}

void TextTable::Set(unsigned id, unsigned short language, std::string_view text) {
  const Entry* const current = FindEntry(id, language);
  if (text == (current != nullptr ? std::string_view{current->text} : std::string_view{})) return;
  std::atomic<const Entry*>& bucket = GetBucket(id, language);
  // Relaxed: only this thread writes.
  const Entry* const older = bucket.load(std::memory_order_relaxed);
  // Release: whoever finds the entry finds it complete.
  bucket.store(new Entry{id, language, std::string(text), older}, std::memory_order_release);
}

const std::string* TextTable::Find(unsigned id, unsigned short language) const noexcept {
  const Entry* const entry = FindEntry(id, language);
  return entry != nullptr && !entry->text.empty() ? &entry->text : nullptr;
}

const TextTable::Entry* TextTable::FindEntry(unsigned id, unsigned short language) const noexcept {
  const Entry* entry = GetBucket(id, language).load(std::memory_order_acquire);
  while (entry != nullptr && (entry->id != id || entry->language != language)) entry = entry->older;
  return entry;
}

std::atomic<const TextTable::Entry*>& TextTable::GetBucket(unsigned id,
                                                           unsigned short language) const noexcept {
  // IDs often differ in their lowest bits only, which the multiplication (by 2^64 over the golden ratio)
  // spreads.
  const std::size_t key = (std::size_t{language} << 32 | id) * 0x9E3779B97F4A7C15;
  return mpBuckets[key >> 32 & (mBucketCount - 1)];
}

}  // namespace YResource

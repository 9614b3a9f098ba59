#pragma once

#include <vector>

namespace YResource {

/// Which language each falls back to: "de-AT" to "de", and that to the neutral one. Asked of ICU once, so
/// that lookups need not.
///
/// Threads: any; it never changes.
class LanguageParents {
 public:
  LanguageParents();

  /// The one of this process.
  ///
  /// Failure: `std::bad_alloc`.
  static const LanguageParents& Get();

  /// 0 for a language without a parent, and for one that is unknown. Going on from a parent leads to 0.
  unsigned short GetParent(unsigned short language) const noexcept;

 private:
  struct Entry {
    unsigned short language;
    unsigned short parent;
  };

  // In ascending order of languages; those whose parent is neutral are left out.
  std::vector<Entry> mEntries;
};

}  // namespace YResource

#pragma once

#include <map>

namespace YResource {

/// The language that each falls back to: "de-AT" to "de", and "de" to the neutral one. ICU is called for all
/// of them once, so that lookups need not call it.
///
/// Threads: any; it never changes.
class LanguageParents {
 public:
  LanguageParents();

  /// The parents, of which the process has one table.
  ///
  /// Failure: `std::bad_alloc`.
  static const LanguageParents& Get();

  /// 0 for a language without a parent, and for an unknown one. Repeated, it always ends at 0.
  unsigned short GetParent(unsigned short language) const noexcept {
    const auto entry = mParents.find(language);
    return entry != mParents.end() ? entry->second : static_cast<unsigned short>(0);
  }

 private:
  // Languages whose parent is the neutral one are left out.
  std::map<unsigned short, unsigned short> mParents;
};

}  // namespace YResource

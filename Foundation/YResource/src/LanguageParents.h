#pragma once

#include <map>

namespace YResource {

/// Which language each falls back to: "de-AT" to "de", and that to the neutral one. ICU is asked for all of
/// them once, so that lookups need not.
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
  unsigned short GetParent(unsigned short language) const noexcept {
    const auto entry = mParents.find(language);
    return entry != mParents.end() ? entry->second : static_cast<unsigned short>(0);
  }

 private:
  // Languages whose parent is the neutral one are left out.
  std::map<unsigned short, unsigned short> mParents;
};

}  // namespace YResource

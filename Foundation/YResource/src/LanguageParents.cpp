#include "LanguageParents.h"

#include <YBase/PublishedOnce.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <string>

#include "LocaleName.h"

namespace YResource {

namespace {

// A language is a family in the low bits and a variant of it in the others; variant 0 is there for every
// family.
constexpr unsigned FAMILIES = 0x400;
constexpr unsigned VARIANTS = 0x40;

constinit YBase::PublishedOnce<LanguageParents> gsLanguageParents;

/// Each step makes the name shorter, so that no road of parents leads in a circle.
unsigned short FindParent(const std::string& name) {
  std::string parent = name;
  while (!parent.empty()) {
    char shorter[ULOC_FULLNAME_CAPACITY];
    UErrorCode error = U_ZERO_ERROR;
    uloc_getParent(parent.c_str(), shorter, sizeof shorter, &error);
    if (error != U_ZERO_ERROR) return 0;
    parent = shorter;
    const unsigned short language = FindLanguage(parent);
    if (language != 0 && GetICUName(language) == parent) return language;
  }
  return 0;
}

}  // namespace

LanguageParents::LanguageParents() {
  for (unsigned family = 1; family < FAMILIES; ++family) {
    UErrorCode error = U_ZERO_ERROR;
    char name[ULOC_FULLNAME_CAPACITY];
    uloc_getLocaleForLCID(family, name, sizeof name, &error);
    if (U_FAILURE(error) != 0) continue;
    for (unsigned variant = 0; variant < VARIANTS; ++variant) {
      const auto language = static_cast<unsigned short>(variant * FAMILIES + family);
      const unsigned short parent = FindParent(GetICUName(language));
      if (parent != 0) mEntries.push_back({language, parent});
    }
  }
  std::sort(mEntries.begin(), mEntries.end(),
            [](const Entry& left, const Entry& right) { return left.language < right.language; });
}

const LanguageParents& LanguageParents::Get() {
  return gsLanguageParents.Get();
}

unsigned short LanguageParents::GetParent(unsigned short language) const noexcept {
  const auto entry =
      std::lower_bound(mEntries.begin(), mEntries.end(), language,
                       [](const Entry& left, unsigned short right) { return left.language < right; });
  return entry != mEntries.end() && entry->language == language ? entry->parent
                                                                : static_cast<unsigned short>(0);
}

}  // namespace YResource

#include "LanguageParents.h"

#include <YBase/NeverDestroyed.h>
#include <YSynch/CriticalSection.h>
#include <unicode/uloc.h>

#include <string>

#include "LocaleName.h"

namespace YResource {

namespace {

// The low bits of a language are its family, the others a variant. Variant 0 exists for every family.
constexpr unsigned FAMILIES = 0x400;
constexpr unsigned VARIANTS = 0x40;

constinit YBase::NeverDestroyed<YSynch::CriticalSection> gsLock(YSynch::LOCK_STACK_CATEGORY_CLASS);
constinit const LanguageParents* gspLanguageParents YSYNCH_GUARDED_BY(*gsLock) = nullptr;

/// Each step makes the name shorter, so a chain of parents always ends.
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
      if (parent != 0) mParents.emplace(language, parent);
    }
  }
}

const LanguageParents& LanguageParents::Get() {
  // Held while ICU is called, so that no child of a fork inherits ICU's lock in a locked state.
  const YSynch::CriticalSection::SmartLock lock(*gsLock);
  if (gspLanguageParents == nullptr) gspLanguageParents = new LanguageParents;
  return *gspLanguageParents;
}

}  // namespace YResource

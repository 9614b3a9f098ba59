#include <YBase/NullText.h>
#include <YResource/Language.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <string>

#include "LocaleName.h"

namespace YResource {

namespace {

constexpr int UNKNOWN = -1;

// Relaxed throughout: nothing else depends on this number.
std::atomic<int> gsProcessLanguage{UNKNOWN};

unsigned short GetLanguageOfEnvironment() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): a host that changes its environment does so before.
    const char* const locale = std::getenv(variable);
    if (locale != nullptr && *locale != '\0') return GetLanguageID(locale);
  }
  return 0;
}

}  // namespace

unsigned short GetLanguageID(const char* locale) {
  std::string name(YBase::EmptyIfNull(locale));
  // The encoding and the modifier of a name as the C library knows it.
  name.resize(std::min(name.find_first_of(".@"), name.size()));
  return FindLanguage(name);
}

YBase::ReturnString GetLocaleName(unsigned short language) {
  std::string name = GetICUName(language);
  // Some end in a collation, which does not matter here.
  name.resize(std::min(name.find('@'), name.size()));
  std::replace(name.begin(), name.end(), '_', '-');
  return name;
}

unsigned short GetProcessLanguageID() {
  int language = gsProcessLanguage.load(std::memory_order_relaxed);
  if (language == UNKNOWN) {
    const int found = GetLanguageOfEnvironment();
    // If a language was set in the meantime it stays, and the exchange stores it in the variable.
    if (gsProcessLanguage.compare_exchange_strong(language, found, std::memory_order_relaxed))
      language = found;
  }
  return static_cast<unsigned short>(language);
}

void SetProcessLanguageID(unsigned short language) noexcept {
  gsProcessLanguage.store(language, std::memory_order_relaxed);
}

}  // namespace YResource

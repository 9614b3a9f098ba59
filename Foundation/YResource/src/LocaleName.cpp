#include "LocaleName.h"

#include <unicode/uloc.h>

#include <cstdint>

namespace YResource {

namespace {

// ICU's functions that write a name into a buffer. A name that does not fit is not that of a locale.
template <class Operation>
std::string CallICU(Operation operation) {
  char name[ULOC_FULLNAME_CAPACITY];
  UErrorCode error = U_ZERO_ERROR;
  operation(name, std::int32_t{sizeof name}, &error);
  return U_SUCCESS(error) && error != U_STRING_NOT_TERMINATED_WARNING ? name : "";
}

/// With the likely script and country added, so that all names of one locale become the same.
std::string Maximise(const std::string& name) {
  return CallICU([&name](char* maximised, std::int32_t size, UErrorCode* error) {
    uloc_addLikelySubtags(name.c_str(), maximised, size, error);
  });
}

}  // namespace

unsigned short FindLanguage(const std::string& locale) {
  const std::string name = CallICU([&locale](char* canonical, std::int32_t size, UErrorCode* error) {
    uloc_getName(locale.c_str(), canonical, size, error);
  });
  const auto language = uloc_getLCID(name.c_str());
  // Identifiers of more than 16 bits belong to collations.
  return language <= 0xFFFF ? static_cast<unsigned short>(language) : static_cast<unsigned short>(0);
}

std::optional<unsigned short> FindLanguageOfItsOwn(const std::string& locale) {
  const unsigned short language = FindLanguage(locale);
  if (language == 0 || Maximise(locale) != Maximise(GetICUName(language))) return std::nullopt;
  return language;
}

std::string GetICUName(unsigned short language) {
  if (language == 0) return {};
  const std::string name = CallICU([language](char* known, std::int32_t size, UErrorCode* error) {
    uloc_getLocaleForLCID(language, known, size, error);
  });
  // If ICU does not know the identifier, it names a parent.
  return uloc_getLCID(name.c_str()) == language ? name : "";
}

}  // namespace YResource

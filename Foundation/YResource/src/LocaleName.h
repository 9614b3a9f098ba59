#pragma once

#include <optional>
#include <string>

namespace YResource {

/// The language of a locale, named as in "de-AT" or "de_AT": that of its nearest parent where it has no
/// identifier of its own, and 0 where none has.
unsigned short FindLanguage(const std::string& locale);

/// The same without parents: none for "en-DE", which has an identifier only through "en".
std::optional<unsigned short> FindLanguageOfItsOwn(const std::string& locale);

/// The name of a language in ICU's form, as in "de_AT"; empty where there is none.
std::string GetICUName(unsigned short language);

}  // namespace YResource

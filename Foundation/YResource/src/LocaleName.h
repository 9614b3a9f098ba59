#pragma once

#include <optional>
#include <string>

namespace YResource {

/// The language of a locale, which is named as in "de-AT" or "de_AT". If the locale has no identifier, the
/// language of its nearest parent that has one; otherwise 0.
unsigned short FindLanguage(const std::string& locale);

/// The same without parents: none for "en-DE", which has only that of "en".
std::optional<unsigned short> FindLanguageOfItsOwn(const std::string& locale);

/// The name of a language in ICU's form, as in "de_AT"; empty if there is none.
std::string GetICUName(unsigned short language);

}  // namespace YResource

#pragma once

#include <YBase/ReturnString.h>
#include <YResource/Export.h>

// Languages are the 16-bit identifiers that ICU maps to and from locale names ("de-DE" is 0x0407); 0 is the
// neutral one.

namespace YResource {

/// The language of a locale with a name such as "de-AT", "de_AT" or "de_AT.UTF-8@euro". If the locale has no
/// identifier, that of its nearest parent; 0 for "C", "POSIX", null and unknown names.
///
/// Threads: any. Calls ICU: for the start of a program, not for each message.
YRESOURCE_EXPORT unsigned short GetLanguageID(const char* locale);

/// The name of a language's locale, such as "de-AT"; empty if there is none, and for the neutral language.
///
/// Threads: any. Calls ICU.
YRESOURCE_EXPORT YBase::ReturnString GetLocaleName(unsigned short language);

/// The language in which this process looks up texts: the one that was set, otherwise that of the
/// environment. The environment is read once: the first of `LC_ALL`, `LC_MESSAGES` and `LANG` that is not
/// empty.
///
/// Threads: any. The first call, or the creation of the first bundle, reads the environment and calls ICU,
/// and must not run while another thread changes the environment. All later calls are one load.
YRESOURCE_EXPORT unsigned short GetProcessLanguageID();

/// Sets the language, for a host that does not want that of the environment.
///
/// Threads: any. Lookups that are in progress may still use the old one.
YRESOURCE_EXPORT void SetProcessLanguageID(unsigned short language) noexcept;

}  // namespace YResource

#pragma once

#include <YBase/ReturnString.h>
#include <YResource/Export.h>

// Languages are the 16-bit identifiers that ICU maps to and from locale names ("de-DE" is 0x0407); 0 is the
// neutral one.

namespace YResource {

/// The language of a locale, named as in "de-AT", "de_AT" or "de_AT.UTF-8@euro": that of its nearest parent
/// where it has no identifier of its own, and 0 for "C", "POSIX", null and what is unknown.
///
/// Threads: any. Calls ICU: for the start of a program, not for each message.
YRESOURCE_EXPORT unsigned short GetLanguageID(const char* locale);

/// The name of a language's locale, as in "de-AT"; empty where there is none, and for the neutral one.
///
/// Threads: any. Calls ICU.
YRESOURCE_EXPORT YBase::ReturnString GetLocaleName(unsigned short language);

/// The language in which this process looks up texts: what was set, else that of the environment, which is
/// read once: `LC_ALL`, `LC_MESSAGES` or `LANG`, the first of them that is not empty.
///
/// Threads: any. The first call, or the making of the first bundle, reads the environment and calls ICU, and
/// must not run while another thread changes the environment; all later calls are one load.
YRESOURCE_EXPORT unsigned short GetProcessLanguageID();

/// For a host that knows better than the environment.
///
/// Threads: any. Lookups that are under way may still use the old one.
YRESOURCE_EXPORT void SetProcessLanguageID(unsigned short language) noexcept;

}  // namespace YResource

#pragma once

#include <YBase/Localizer.h>
#include <YBase/SmartPtrI.h>
#include <YResource/Bundle.h>
#include <YResource/Export.h>

namespace YResource {

/// The localizer of this process: it finds texts in the catalogues that have been registered.
///
/// Threads: any. Its lookups do not call ICU and read no file; they allocate the text that they return.
///
/// Failure: `std::bad_alloc`. What a client's bundle throws reaches the caller of the lookup.
YRESOURCE_EXPORT YBase::SmartPtrI<YBase::Localizer> GetLocalizer();

/// Registers a catalogue for the messages of a domain, in place of any other. Texts of structured messages
/// are used as they are: no arguments are filled in.
///
/// Ownership: the localizer keeps a reference.
///
/// Threads: any, even during lookups.
///
/// \pre The domain is not `YBase::MESSAGE_DOMAIN_UNKNOWN`, and the bundle is not null.
YRESOURCE_EXPORT void RegisterBundle(unsigned domain, const YBase::SmartPtrI<Bundle>& bundle);

/// Releases the catalogue of a domain, if there is one. When this returns, only lookups that are in progress
/// still use it, each with its own reference.
///
/// Threads: any. Reentrancy: the last reference is released with no lock held.
YRESOURCE_EXPORT void UnregisterBundle(unsigned domain);

}  // namespace YResource

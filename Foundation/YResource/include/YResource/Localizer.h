#pragma once

#include <YBase/Localizer.h>
#include <YBase/SmartPtrI.h>
#include <YResource/Bundle.h>
#include <YResource/Export.h>

namespace YResource {

/// The localizer of this process: it finds texts in the catalogues that are registered below.
///
/// Threads: any. Its lookups call no ICU and touch no file; they allocate the text that they return.
///
/// Failure: `std::bad_alloc`. What a client's bundle throws comes out of its lookups.
YRESOURCE_EXPORT YBase::SmartPtrI<YBase::Localizer> GetLocalizer();

/// Makes a catalogue the one for messages of a domain, in place of another that may have been. Texts of
/// structured messages are taken as they stand: no formatter fills in arguments.
///
/// Ownership: the localizer keeps a reference.
///
/// Threads: any, also while others look up.
///
/// \pre The domain is not `YBase::MESSAGE_DOMAIN_UNKNOWN`, and the bundle is not null.
YRESOURCE_EXPORT void RegisterBundle(unsigned domain, const YBase::SmartPtrI<Bundle>& bundle);

/// Lets go of the catalogue of a domain, if there is one. When this returns, only lookups that are under way
/// still use it, each with a reference of its own.
///
/// Threads: any. Reentrancy: the last reference is released with no lock held.
YRESOURCE_EXPORT void UnregisterBundle(unsigned domain);

}  // namespace YResource

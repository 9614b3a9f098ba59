#pragma once

#include <YBase/Message.h>
#include <YBase/SmartPtrI.h>
#include <YResource/Bundle.h>
#include <YResource/Export.h>

namespace YResource {

/// A catalogue that is filled in memory.
///
/// A lookup returns the text in the language, otherwise that in the nearest of its parents ("de-AT", then
/// "de"), otherwise the neutral text, otherwise the default. If the default is null or empty, it returns the
/// domain and the ID ("12/345"), so that no record is empty.
///
/// Threads: any, even during lookups.
///
/// Failure: `std::bad_alloc`; the catalogue stays as it was.
class YRESOURCE_EXPORT MemoryBundle : public virtual Bundle {
 public:
  virtual unsigned GetDomain() const = 0;

  /// Sets the text with an ID in a language, in UTF-8. Null or an empty text removes it.
  virtual void SetText(unsigned id, unsigned short language, const char* text) = 0;

 protected:
  ~MemoryBundle() override;
};

/// An empty catalogue.
///
/// Failure: `std::bad_alloc`.
YRESOURCE_EXPORT YBase::SmartPtrI<MemoryBundle> CreateMemoryBundle(
    unsigned domain = YBase::MESSAGE_DOMAIN_UNKNOWN);

}  // namespace YResource

#pragma once

#include <YBase/Message.h>
#include <YBase/SmartPtrI.h>
#include <YResource/Bundle.h>
#include <YResource/Export.h>

namespace YResource {

/// A catalogue that is filled in memory.
///
/// A lookup takes the text in the language, else in its parents ("de-AT", then "de"), else the neutral one,
/// else the default; where that is null or empty, too, the domain and the ID ("12/345"), so that no record is
/// empty.
///
/// Threads: any, also while others look up.
///
/// Failure: `std::bad_alloc`; the catalogue stays as it was.
class YRESOURCE_EXPORT MemoryBundle : public virtual Bundle {
 public:
  virtual unsigned GetDomain() const = 0;

  /// Sets the text under an ID in a language, UTF-8. Null or an empty text takes it away.
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

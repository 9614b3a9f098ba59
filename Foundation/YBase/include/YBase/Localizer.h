#pragma once

#include <YBase/Export.h>
#include <YBase/ReferenceCounted.h>
#include <YBase/ReturnString.h>

namespace YBase {

/// Knows texts that messages do not carry themselves.
///
/// Threads: any operation may be called from several threads at once.
class YBASE_EXPORT Localizer : public virtual ReferenceCounted {
 public:
  /// The text under a domain and an ID in just this language, UTF-8; empty where there is none.
  virtual ReturnString GetText(unsigned domain, unsigned id, unsigned short language) const = 0;

  /// The language to fall back to where there is no text in `language`: the next more general one, and 0, the
  /// neutral one, at last.
  virtual unsigned short GetParentLanguage(unsigned short language) const noexcept = 0;

 protected:
  ~Localizer() override;
};

}  // namespace YBase

#pragma once

#include <YBase/Export.h>
#include <YBase/ReferenceCounted.h>
#include <YBase/ReturnString.h>

namespace YBase {

/// Provides texts that messages do not contain themselves.
///
/// Threads: any operation may be called from several threads at once.
class YBASE_EXPORT Localizer : public virtual ReferenceCounted {
 public:
  /// The text with that domain and ID in exactly this language, in UTF-8; empty if there is none.
  virtual ReturnString GetText(unsigned domain, unsigned id, unsigned short language) const = 0;

  /// The language to use if there is no text in `language`: the next more general one, and finally 0, the
  /// neutral one.
  virtual unsigned short GetParentLanguage(unsigned short language) const noexcept = 0;

 protected:
  ~Localizer() override;
};

}  // namespace YBase

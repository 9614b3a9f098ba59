#pragma once

#include <YBase/ReferenceCounted.h>
#include <YBase/ReturnString.h>
#include <YResource/Export.h>
#include <YResource/MessageTemplate.h>

namespace YResource {

/// A catalogue of the texts that messages are known by. Clients may bring their own.
///
/// Languages are 16-bit identifiers, as ICU maps them to and from locale names ("de-DE" is 0x0407); 0 is the
/// neutral one.
///
/// Threads: both operations may be called from several threads at once.
///
/// Failure: a text that is not there is no failure, but gives the default; what an implementation throws
/// reaches the caller of the logging function.
class YRESOURCE_EXPORT Bundle : public virtual YBase::ReferenceCounted {
 public:
  /// The template of a message in a language, or one of `defaultTemplate` where the catalogue has none.
  virtual MessageTemplate GetMessageTemplate(unsigned id, unsigned short language,
                                             const char* defaultTemplate) const = 0;
  /// The text under an ID in a language, or `defaultText` where the catalogue has none.
  virtual YBase::ReturnString GetString(unsigned id, unsigned short language,
                                        const char* defaultText) const = 0;

 protected:
  ~Bundle() override;
};

}  // namespace YResource

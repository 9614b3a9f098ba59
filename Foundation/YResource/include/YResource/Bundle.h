#pragma once

#include <YBase/ReferenceCounted.h>
#include <YBase/ReturnString.h>
#include <YResource/Export.h>
#include <YResource/MessageTemplate.h>

namespace YResource {

/// A catalogue of message texts, by ID. Clients may implement their own.
///
/// Languages are 16-bit identifiers, as ICU maps them to and from locale names ("de-DE" is 0x0407); 0 is the
/// neutral one.
///
/// Threads: both operations may be called from several threads at once.
///
/// Failure: a missing text is not a failure: the default is returned. What an implementation throws reaches
/// the caller of the logging function.
class YRESOURCE_EXPORT Bundle : public virtual YBase::ReferenceCounted {
 public:
  /// The template of a message in a language, or one made of `defaultTemplate` if the catalogue has none.
  virtual MessageTemplate GetMessageTemplate(unsigned id, unsigned short language,
                                             const char* defaultTemplate) const = 0;
  /// The text with an ID in a language, or `defaultText` if the catalogue has none.
  virtual YBase::ReturnString GetString(unsigned id, unsigned short language,
                                        const char* defaultText) const = 0;

 protected:
  ~Bundle() override;
};

}  // namespace YResource

#include "TableBundle.h"

#include <YBase/FormatMessage.h>
#include <YBase/Message.h>
#include <YResource/Language.h>

namespace YResource {

TableBundle::TableBundle(unsigned domain, std::size_t expectedTexts)
    : mDomain(domain), mTexts(expectedTexts), mParents(LanguageParents::Get()) {
  // Found now, so that the first lookup does not have to ask ICU.
  GetProcessLanguageID();
}

MessageTemplate TableBundle::GetMessageTemplate(unsigned id, unsigned short language,
                                                const char* defaultTemplate) const {
  return MessageTemplate(GetString(id, language, defaultTemplate));
}

YBase::ReturnString TableBundle::GetString(unsigned id, unsigned short language,
                                           const char* defaultText) const {
  if (const std::string* text = FindWithFallback(id, language)) return *text;
  if (defaultText != nullptr && *defaultText != '\0') return defaultText;
  // Rather this than a record that says nothing.
  YBase::Message message;
  message.SetDomainAndID(mDomain, id);
  return YBase::FormatMessage(message, 0);
}

const std::string* TableBundle::FindWithFallback(unsigned id, unsigned short language) const noexcept {
  while (true) {
    const std::string* const text = FindText(id, language);
    if (text != nullptr || language == 0) return text;
    language = mParents.GetParent(language);
  }
}

}  // namespace YResource

#include "TableBundle.h"

#include <YBase/FormatMessage.h>
#include <YBase/Message.h>
#include <YResource/Language.h>

namespace YResource {

// Out of line, so that the interface's type information is in one place.
Bundle::~Bundle() = default;

TableBundle::TableBundle(unsigned domain) : mDomain(domain), mParents(LanguageParents::Get()) {
  // Computed now, so that the first lookup does not have to call ICU.
  GetProcessLanguageID();
}

MessageTemplate TableBundle::GetMessageTemplate(unsigned id, unsigned short language,
                                                const char* defaultTemplate) const {
  return MessageTemplate(GetString(id, language, defaultTemplate));
}

YBase::ReturnString TableBundle::GetString(unsigned id, unsigned short language,
                                           const char* defaultText) const {
  std::string text = FindText(id, language);
  while (text.empty() && language != 0) {
    language = mParents.GetParent(language);
    text = FindText(id, language);
  }
  if (!text.empty()) return text;
  if (defaultText != nullptr && *defaultText != '\0') return defaultText;
  // Better than an empty record.
  YBase::Message message;
  message.SetDomainAndID(mDomain, id);
  return YBase::FormatMessage(message, 0);
}

std::string TableBundle::FindText(unsigned id, unsigned short language) const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  const auto text = mTexts.find({id, language});
  return text != mTexts.end() ? text->second : std::string();
}

void TableBundle::Set(unsigned id, unsigned short language, std::string text) {
  const YSynch::RWLock::WriteSmartLock lock(mLock);
  if (text.empty()) {
    mTexts.erase({id, language});
  } else {
    mTexts.insert_or_assign({id, language}, std::move(text));
  }
}

}  // namespace YResource

#pragma once

#include <YResource/Bundle.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

#include <cstddef>
#include <string>

#include "LanguageParents.h"
#include "TextTable.h"

namespace YResource {

/// The part of a bundle that knows its texts, whatever interface it shows.
class TableBundle : public virtual Bundle, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  MessageTemplate GetMessageTemplate(unsigned id, unsigned short language,
                                     const char* defaultTemplate) const override;
  YBase::ReturnString GetString(unsigned id, unsigned short language, const char* defaultText) const override;

  /// The text in just this language, or null. Valid as long as the bundle.
  const std::string* FindText(unsigned id, unsigned short language) const noexcept {
    return mTexts.Find(id, language);
  }

 protected:
  TableBundle(unsigned domain, std::size_t expectedTexts);
  ~TableBundle() override = default;

  const unsigned mDomain;
  TextTable mTexts;

 private:
  const std::string* FindWithFallback(unsigned id, unsigned short language) const noexcept;

  const LanguageParents& mParents;
};

}  // namespace YResource

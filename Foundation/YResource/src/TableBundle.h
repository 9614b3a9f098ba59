#pragma once

#include <YResource/Bundle.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/RWLock.h>
#include <YSynch/ReferenceCountedImpl.h>

#include <map>
#include <string>
#include <utility>

#include "LanguageParents.h"

namespace YResource {

/// The part of a bundle that holds its texts, whatever its interface.
class TableBundle : public virtual Bundle, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  MessageTemplate GetMessageTemplate(unsigned id, unsigned short language,
                                     const char* defaultTemplate) const override;
  YBase::ReturnString GetString(unsigned id, unsigned short language, const char* defaultText) const override;

  /// The text in exactly this language, or an empty one.
  std::string FindText(unsigned id, unsigned short language) const;

 protected:
  explicit TableBundle(unsigned domain);
  ~TableBundle() override = default;

  /// An empty text removes the text.
  ///
  /// Failure: `std::bad_alloc`; the texts stay as they were.
  void Set(unsigned id, unsigned short language, std::string text);

  const unsigned mDomain;

 private:
  const LanguageParents& mParents;
  mutable YSynch::RWLock mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  // By ID and language.
  std::map<std::pair<unsigned, unsigned short>, std::string> mTexts YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YResource

#pragma once

#include <YBase/Localizer.h>
#include <YBase/SmartPtrI.h>
#include <YResource/Bundle.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/RWLock.h>
#include <YSynch/ReferenceCountedImpl.h>

#include <map>

#include "LanguageParents.h"

namespace YResource {

class Localizer_Impl final : public YBase::Localizer,
                             public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  Localizer_Impl() : mParents(LanguageParents::Get()) {}

  YBase::ReturnString GetText(unsigned domain, unsigned id, unsigned short language) const override;
  unsigned short GetParentLanguage(unsigned short language) const noexcept override {
    return mParents.GetParent(language);
  }

  /// Null removes the bundle of a domain.
  ///
  /// Failure: `std::bad_alloc`; everything stays as it was.
  void SetBundle(unsigned domain, YBase::SmartPtrI<Bundle> bundle);

 private:
  ~Localizer_Impl() override = default;

  YBase::SmartPtrI<Bundle> FindBundle(unsigned domain) const;

  const LanguageParents& mParents;
  mutable YSynch::RWLock mLock{YSynch::LOCK_STACK_CATEGORY_CLASS};
  // Null for a domain whose bundle was removed.
  std::map<unsigned, YBase::SmartPtrI<Bundle>> mBundles YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YResource

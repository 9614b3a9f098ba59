#pragma once

#include <YBase/Localizer.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "BundleRegistry.h"
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

  BundleRegistry& GetRegistry() noexcept { return mRegistry; }

 private:
  ~Localizer_Impl() override = default;

  const LanguageParents& mParents;
  BundleRegistry mRegistry;
};

}  // namespace YResource

#include "Localizer_Impl.h"

#include <YBase/Message.h>
#include <YBase/NeverDestroyed.h>
#include <YResource/Localizer.h>
#include <YSynch/CriticalSection.h>

#include <cassert>
#include <utility>

#include "TableBundle.h"

namespace YResource {

namespace {

constinit YBase::NeverDestroyed<YSynch::CriticalSection> gsLock(YSynch::LOCK_STACK_CATEGORY_CLASS);
// The one of the process, made when it is first needed.
constinit YBase::NeverDestroyed<YBase::SmartPtrI<Localizer_Impl>> gsLocalizer YSYNCH_GUARDED_BY(*gsLock);

YBase::SmartPtrI<Localizer_Impl> GetLocalizerOfProcess() {
  const YSynch::CriticalSection::SmartLock lock(*gsLock);
  if (!*gsLocalizer) *gsLocalizer = YBase::SmartPtrI<Localizer_Impl>(new Localizer_Impl);
  return *gsLocalizer;
}

}  // namespace

YBase::ReturnString Localizer_Impl::GetText(unsigned domain, unsigned id, unsigned short language) const {
  const YBase::SmartPtrI<Bundle> bundle = FindBundle(domain);
  if (!bundle) return {};
  // Our bundles are queried for just this language, because the message's own texts in its parents have
  // precedence over the bundle's.
  if (const auto* table = dynamic_cast<const TableBundle*>(bundle.Get()))
    return table->FindText(id, language);
  return bundle->GetString(id, language, "");
}

void Localizer_Impl::SetBundle(unsigned domain, YBase::SmartPtrI<Bundle> bundle) {
  // `bundle` now holds the old bundle and is released after the lock: that may run client code.
  const YSynch::RWLock::WriteSmartLock lock(mLock);
  std::swap(mBundles[domain], bundle);
}

YBase::SmartPtrI<Bundle> Localizer_Impl::FindBundle(unsigned domain) const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  const auto place = mBundles.find(domain);
  return place != mBundles.end() ? place->second : nullptr;
}

YBase::SmartPtrI<YBase::Localizer> GetLocalizer() {
  return GetLocalizerOfProcess();
}

void RegisterBundle(unsigned domain, const YBase::SmartPtrI<Bundle>& bundle) {
  assert(domain != YBase::MESSAGE_DOMAIN_UNKNOWN);
  assert(bundle);
  if (domain == YBase::MESSAGE_DOMAIN_UNKNOWN || !bundle) return;
  GetLocalizerOfProcess()->SetBundle(domain, bundle);
}

void UnregisterBundle(unsigned domain) {
  GetLocalizerOfProcess()->SetBundle(domain, nullptr);
}

}  // namespace YResource

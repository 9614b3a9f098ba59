#include "Localizer_Impl.h"

#include <YBase/Message.h>
#include <YBase/PublishedOnce.h>
#include <YResource/Localizer.h>

#include <cassert>
#include <string>

#include "TableBundle.h"

namespace YResource {

namespace {

struct LocalizerOfProcess {
  const YBase::SmartPtrI<Localizer_Impl> localizer{new Localizer_Impl};
};

constinit YBase::PublishedOnce<LocalizerOfProcess> gsLocalizer;

}  // namespace

YBase::ReturnString Localizer_Impl::GetText(unsigned domain, unsigned id, unsigned short language) const {
  const YBase::SmartPtrI<Bundle> bundle = mRegistry.Find(domain);
  if (!bundle) return {};
  // Ours are asked for just this language: the message's own texts in the parents come before the bundle's.
  if (const auto* table = dynamic_cast<const TableBundle*>(bundle.Get())) {
    const std::string* const text = table->FindText(id, language);
    return text != nullptr ? *text : std::string();
  }
  return bundle->GetString(id, language, "");
}

YBase::SmartPtrI<YBase::Localizer> GetLocalizer() {
  return gsLocalizer.Get().localizer;
}

void RegisterBundle(unsigned domain, const YBase::SmartPtrI<Bundle>& bundle) {
  assert(domain != YBase::MESSAGE_DOMAIN_UNKNOWN);
  assert(bundle);
  if (domain == YBase::MESSAGE_DOMAIN_UNKNOWN || !bundle) return;
  gsLocalizer.Get().localizer->GetRegistry().Set(domain, bundle);
}

void UnregisterBundle(unsigned domain) {
  gsLocalizer.Get().localizer->GetRegistry().Set(domain, nullptr);
}

}  // namespace YResource

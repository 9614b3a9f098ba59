#include "BundleRegistry.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace YResource {

namespace {

template <class List>
auto FindPlace(List& list, unsigned domain) {
  return std::lower_bound(list.begin(), list.end(), domain, [](const auto& registration, unsigned right) {
    return registration.domain < right;
  });
}

}  // namespace

/// A reader's stay. Nothing but looking up and adding a reference happens in it.
class BundleRegistry::Visit {
 public:
  explicit Visit(const BundleRegistry& registry) noexcept
      : mReaders(registry.mReaders[registry.mPhase.load()]) {
    mReaders.fetch_add(1);
  }
  ~Visit() { mReaders.fetch_sub(1); }
  Visit(const Visit&) = delete;
  Visit& operator=(const Visit&) = delete;

 private:
  std::atomic<unsigned>& mReaders;
};

BundleRegistry::BundleRegistry()
    : mpLock(YSynch::CreateCriticalSection(YSynch::LOCK_STACK_CATEGORY_CLASS)), mpList(new List) {
  Join();
}

BundleRegistry::~BundleRegistry() {
  Leave();
  delete mpList.load();
}

void BundleRegistry::Set(unsigned domain, YBase::SmartPtrI<Bundle> bundle) {
  // Destroyed last: releasing a bundle may run client code, which no lock must be held for.
  std::unique_ptr<const List> old;
  const YSynch::CriticalSection::SmartLock lock(*mpLock);
  auto changed = Change(*mpList.load(), domain, std::move(bundle));
  old.reset(mpList.exchange(changed.release()));
  WaitForReaders();
}

YBase::SmartPtrI<Bundle> BundleRegistry::Find(unsigned domain) const {
  const Visit visit(*this);
  const List& list = *mpList.load();
  const auto place = FindPlace(list, domain);
  return place != list.end() && place->domain == domain ? place->bundle : nullptr;
}

std::unique_ptr<const BundleRegistry::List> BundleRegistry::Change(const List& list, unsigned domain,
                                                                   YBase::SmartPtrI<Bundle> bundle) {
  auto changed = std::make_unique<List>(list);
  auto place = FindPlace(*changed, domain);
  if (place != changed->end() && place->domain == domain) place = changed->erase(place);
  if (bundle) changed->insert(place, {domain, std::move(bundle)});
  return changed;
}

void BundleRegistry::WaitForReaders() noexcept {
  // Twice: a reader may have read the phase long before it counts itself, so those with the old list may
  // stand in either count.
  for (int i = 0; i < 2; ++i) {
    const unsigned phase = mPhase.fetch_xor(1);
    while (mReaders[phase].load() != 0) std::this_thread::yield();
  }
}

void BundleRegistry::AfterForkInChild() noexcept {
  // The readers of other threads stayed in the parent, and will never leave here. This thread is none: it
  // forks.
  for (auto& readers : mReaders) readers.store(0);
}

}  // namespace YResource

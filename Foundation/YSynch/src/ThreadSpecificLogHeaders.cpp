#include <YSynch/ThreadSpecificLogHeaders.h>

#include <YBase/NeverDestroyed.h>

#include <utility>

#include <YSynch/CriticalSection.h>

namespace YSynch {
namespace {

/// One registered function. It is held by reference counts, so that taking it runs no code of the client's
/// under the lock, and one that is replaced while it runs lives until it returns.
template <class Function>
class Callback {
 public:
  void Register(Function function) {
    Replace(function ? std::make_shared<const Function>(std::move(function)) : nullptr);
  }

  void Deregister() noexcept { Replace(nullptr); }

  std::shared_ptr<const Function> Take() const noexcept {
    const CriticalSection::SmartLock lock(mLock);
    return mpFunction;
  }

 private:
  // By value: the old one is destroyed after the lock was given back.
  void Replace(std::shared_ptr<const Function> function) noexcept {
    const CriticalSection::SmartLock lock(mLock);
    mpFunction.swap(function);
  }

  mutable CriticalSection mLock{LOCK_STACK_CATEGORY_CLASS};
  std::shared_ptr<const Function> mpFunction YSYNCH_GUARDED_BY(mLock);
};

struct Callbacks {
  Callback<ThreadSpecificLogHeadersGetter> mGetter;
  Callback<ThreadSpecificLogHeadersSetter> mSetter;
  Callback<ThreadSpecificLogHeadersUnsetter> mUnsetter;
};

constinit YBase::NeverDestroyed<Callbacks> gsCallbacks;

}  // namespace

void RegisterThreadSpecificLogHeadersGetter(ThreadSpecificLogHeadersGetter getter) {
  gsCallbacks->mGetter.Register(std::move(getter));
}

void RegisterThreadSpecificLogHeadersSetter(ThreadSpecificLogHeadersSetter setter) {
  gsCallbacks->mSetter.Register(std::move(setter));
}

void RegisterThreadSpecificLogHeadersUnsetter(ThreadSpecificLogHeadersUnsetter unsetter) {
  gsCallbacks->mUnsetter.Register(std::move(unsetter));
}

void DeregisterThreadSpecificLogHeadersGetter() noexcept {
  gsCallbacks->mGetter.Deregister();
}

void DeregisterThreadSpecificLogHeadersSetter() noexcept {
  gsCallbacks->mSetter.Deregister();
}

void DeregisterThreadSpecificLogHeadersUnsetter() noexcept {
  gsCallbacks->mUnsetter.Deregister();
}

std::shared_ptr<YLog::ThreadSpecificLogHeaders> GetThreadSpecificLogHeaders() {
  const auto getter = gsCallbacks->mGetter.Take();
  return getter != nullptr ? (*getter)() : nullptr;
}

void SetThreadSpecificLogHeaders(YLog::ThreadSpecificLogHeaders* headers) {
  if (const auto setter = gsCallbacks->mSetter.Take()) (*setter)(headers);
}

void UnsetThreadSpecificLogHeaders() {
  if (const auto unsetter = gsCallbacks->mUnsetter.Take()) (*unsetter)();
}

}  // namespace YSynch

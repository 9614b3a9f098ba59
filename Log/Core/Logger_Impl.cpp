#include "Core/Logger_Impl.h"

#include <optional>
#include <utility>

#include <YBase/NullText.h>
#include <YLog/ConfigurationHook.h>

#include "Core/BackPointer.h"
#include "Core/UnderConfiguration.h"
#include "ModuleMain.h"

namespace YLog {

Logger::~Logger() = default;
Logger::Callback::~Callback() = default;

/// The dispatchers hold this instead of the logger, which holds them: otherwise there would be a cycle of
/// references. It outlives the logger if a dispatcher does.
class Logger_Impl::CallbackProxy final : public Dispatcher::Callback,
                                         public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  void SetOwner(Logger_Impl* owner) noexcept { mOwner.Set(owner); }

  void DispatcherChanged(Dispatcher& dispatcher) override {
    if (const YBase::SmartPtrI<Logger_Impl> owner = mOwner.Get()) owner->DispatcherChanged(dispatcher);
  }

 private:
  ~CallbackProxy() override = default;

  BackPointer<Logger_Impl> mOwner;
};

/// A dispatcher that the hook has not configured yet.
struct Logger_Impl::NewDispatcher {
  using Shown = UnderConfiguration<Logger_Impl, NewDispatcher>;

  YBase::SmartPtrI<Dispatcher> mpDispatcher;
  // None until it is in the list.
  std::optional<std::size_t> mPlace;
};

Logger_Impl::Logger_Impl(const char* name, YSynch::EnumORBLockStackCategory category)
    : mpCallbackProxy(new CallbackProxy), mLock(category), mName(YBase::NotNull(name)) {
  mpCallbackProxy->SetOwner(this);
}

Logger_Impl::~Logger_Impl() = default;

void Logger_Impl::ReferenceCountIsAboutToReachZero() const {
  mpCallbackProxy->SetOwner(nullptr);
  for (std::size_t index = 0; const auto dispatcher = GetDispatcherAt(index); ++index) {
    dispatcher->UnregisterCallback(mpCallbackProxy.Get());
  }
}

void Logger_Impl::SetResourceBundle(YResource::Bundle* bundle) {
  // Declared before the lock, so that it is released after the lock: that may run a
  // destructor of the client.
  YBase::SmartPtrI<YResource::Bundle> replaced(bundle);
  const YSynch::RWLock::WriteSmartLock lock(mLock);
  std::swap(mpResourceBundle, replaced);
}

YBase::SmartPtrI<YResource::Bundle> Logger_Impl::GetResourceBundle() const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  return mpResourceBundle;
}

void Logger_Impl::LogMessage(unsigned short cookie, const char* text, unsigned messageID,
                             const char* fileName, const char* funcName, int lineNumber) const {
  const YBase::SmartPtrI<Dispatcher> dispatcher = GetDispatcher(cookie);
  if (dispatcher) dispatcher->LogMessage(*this, text, messageID, fileName, funcName, lineNumber);
}

void Logger_Impl::LogMessage(unsigned short cookie, const YBase::Message& message) const {
  const YBase::SmartPtrI<Dispatcher> dispatcher = GetDispatcher(cookie);
  if (dispatcher) dispatcher->LogMessage(*this, message);
}

void Logger_Impl::LogMessage(unsigned short cookie, YBase::Message& message) const {
  const YBase::SmartPtrI<Dispatcher> dispatcher = GetDispatcher(cookie);
  if (dispatcher) dispatcher->LogMessage(*this, message);
}

void Logger_Impl::GetMessageTextJSON(unsigned short cookie, const char* text, unsigned messageID,
                                     const char* fileName, const char* funcName, int lineNumber,
                                     std::string& out) const {
  const YBase::SmartPtrI<Dispatcher> dispatcher = GetDispatcher(cookie);
  if (dispatcher) {
    dispatcher->GetMessageTextJSON(*this, text, messageID, fileName, funcName, lineNumber, out);
  }
}

unsigned short Logger_Impl::ObtainCookie(const char* dispatcherName) {
  dispatcherName = YBase::NotNull(dispatcherName);
  const DispatcherList dispatchers = GetDispatchers();
  const std::size_t index = dispatchers.FindName(dispatcherName);
  if (dispatchers.IsConfigured(index)) return DispatcherList::ToCookie(index);
  if (NewDispatcher* shown = NewDispatcher::Shown::Find(*this, dispatcherName)) {
    return DispatcherList::ToCookie(GetPlace(*shown));
  }
  NewDispatcher dispatcher;
  if (index < dispatchers.GetCount()) {
    dispatcher = {dispatchers.Get(index), index};
  } else {
    dispatcher.mpDispatcher = CreateDispatcher(dispatcherName);
  }
  return DispatcherList::ToCookie(GetPlaceWhenConfigured(dispatcher));
}

YBase::SmartPtrI<Dispatcher> Logger_Impl::GetDispatcher(unsigned short cookie) const {
  return GetDispatcherAt(DispatcherList::ToIndex(cookie));
}

void Logger_Impl::RefreshConfiguration(ConfigurationHook& hook) {
  for (std::size_t index = 0; const auto dispatcher = GetDispatcherAt(index); ++index) {
    FinishPlace(index, dispatcher, Configure(dispatcher, hook));
  }
}

YBase::SmartPtrI<Dispatcher> Logger_Impl::Configure(const YBase::SmartPtrI<Dispatcher>& dispatcher,
                                                    ConfigurationHook& hook) {
  YBase::SmartPtrI<Dispatcher> configured = dispatcher;
  hook.ConfigureDispatcher(configured, *this);
  return configured ? configured : dispatcher;
}

YBase::SmartPtrI<Dispatcher> Logger_Impl::Configure(NewDispatcher& dispatcher, ConfigurationHook& hook) {
  const NewDispatcher::Shown shown(*this, dispatcher.mpDispatcher->GetName(), dispatcher);
  try {
    return Configure(dispatcher.mpDispatcher, hook);
  } catch (...) {
    // The next caller that asks for the dispatcher shows it to the hook again, as if it had never been added.
    if (dispatcher.mPlace) SetConfigured(*dispatcher.mPlace, false);
    throw;
  }
}

std::size_t Logger_Impl::GetPlace(NewDispatcher& dispatcher) {
  if (!dispatcher.mPlace) dispatcher.mPlace = AddDispatcher(dispatcher.mpDispatcher);
  return *dispatcher.mPlace;
}

std::size_t Logger_Impl::GetPlaceWhenConfigured(NewDispatcher& dispatcher) {
  const YBase::SmartPtrI<ConfigurationHook> hook = gModuleMainPtr->GetConfigurationHook();
  if (!hook) return GetPlace(dispatcher);
  const YBase::SmartPtrI<Dispatcher> configured = Configure(dispatcher, *hook);
  if (!dispatcher.mPlace) return AddDispatcher(configured);
  FinishPlace(*dispatcher.mPlace, dispatcher.mpDispatcher, configured);
  return *dispatcher.mPlace;
}

std::size_t Logger_Impl::AddDispatcher(const YBase::SmartPtrI<Dispatcher>& dispatcher) {
  std::size_t index = 0;
  PutIntoList(dispatcher, [&]() YSYNCH_REQUIRES(mLock) { index = mDispatchers.Add(dispatcher); });
  return index;
}

void Logger_Impl::FinishPlace(std::size_t index, const YBase::SmartPtrI<Dispatcher>& shown,
                              const YBase::SmartPtrI<Dispatcher>& configured) {
  if (configured != shown) ReplaceDispatcher(index, configured);
  SetConfigured(index, true);
}

void Logger_Impl::SetConfigured(std::size_t index, bool configured) noexcept {
  const YSynch::RWLock::WriteSmartLock lock(mLock);
  mDispatchers.SetConfigured(index, configured);
}

void Logger_Impl::ReplaceDispatcher(std::size_t index, const YBase::SmartPtrI<Dispatcher>& dispatcher) {
  // Not always the one that was shown to the hook: another thread may be refreshing, too.
  YBase::SmartPtrI<Dispatcher> replaced;
  PutIntoList(dispatcher,
              [&]() YSYNCH_REQUIRES(mLock) { replaced = mDispatchers.Replace(index, dispatcher); });
  StopListeningTo(*replaced);
  NotifySubscribersThatDispatcherChanged(DispatcherList::ToCookie(index));
}

// Why the proxy is registered with exactly the dispatchers in the list when all threads have finished,
// although no lock is held while a dispatcher is called, so that threads may interleave at any point:
//
// The proxy is registered with a dispatcher before the dispatcher enters the list, and unregistered after the
// dispatcher has left it. After unregistering, a thread checks the list again, and registers again if the
// dispatcher is back. It counts the unregistration under the same lock as that check.
//
// Suppose that the last call to a dispatcher was an unregistration. The check after it found the dispatcher
// missing; otherwise another call would have followed. If the dispatcher is in the list in the end, it
// entered after that check, and the thread that added it had registered before the last call, and so before
// the check. That thread finds that the count has changed since it registered, and registers again: a call
// after the last, which contradicts the assumption.
//
// Suppose that the last call was a registration. After each registration the dispatcher either enters the
// list or is found in it. If it is not in the list in the end, some thread removed it later, checked, and
// unregistered: again a call after the last.

template <class Function>
void Logger_Impl::PutIntoList(const YBase::SmartPtrI<Dispatcher>& dispatcher, Function put) {
  const unsigned long unregistrationsBefore = GetUnregistrationCount();
  // Before the dispatcher is in the list, so that no change is missed.
  dispatcher->RegisterCallback(mpCallbackProxy.Get());
  unsigned long unregistrations = 0;
  try {
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    put();
    unregistrations = mUnregistrationCount;
  } catch (...) {
    StopListeningTo(*dispatcher);
    throw;
  }
  if (unregistrations != unregistrationsBefore) ListenAsTheListSays(*dispatcher, true);
}

void Logger_Impl::StopListeningTo(Dispatcher& dispatcher) {
  if (!GetDispatchers().Contains(dispatcher)) ListenAsTheListSays(dispatcher, false);
}

void Logger_Impl::ListenAsTheListSays(Dispatcher& dispatcher, bool listed) {
  for (;; listed = !listed) {
    if (listed) {
      dispatcher.RegisterCallback(mpCallbackProxy.Get());
    } else {
      dispatcher.UnregisterCallback(mpCallbackProxy.Get());
    }
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    if (!listed) ++mUnregistrationCount;
    if (mDispatchers.Contains(dispatcher) == listed) break;
  }
  // It may have changed while the proxy was not registered.
  if (listed) NotifySubscribersOfPlacesOf(dispatcher);
}

void Logger_Impl::DispatcherChanged(const Dispatcher& dispatcher) const {
  if (NotifySubscribersOfPlacesOf(dispatcher)) return;
  const std::size_t index = GetDispatchers().FindName(dispatcher.GetName());
  NotifySubscribersThatDispatcherChanged(DispatcherList::ToCookie(index));
}

bool Logger_Impl::NotifySubscribersOfPlacesOf(const Dispatcher& dispatcher) const {
  const DispatcherList dispatchers = GetDispatchers();
  bool known = false;
  // A hook may have put one dispatcher into several places.
  for (std::size_t index = 0; index < dispatchers.GetCount(); ++index) {
    if (dispatchers.Get(index).Get() != &dispatcher) continue;
    known = true;
    NotifySubscribersThatDispatcherChanged(DispatcherList::ToCookie(index));
  }
  return known;
}

void Logger_Impl::NotifySubscribersThatDispatcherChanged(unsigned short cookie) const {
  mCallbacks.ForEach([cookie](Callback& callback) { callback.DispatcherChanged(cookie); });
}

YBase::SmartPtrI<Dispatcher> Logger_Impl::GetDispatcherAt(std::size_t index) const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  return mDispatchers.Get(index);
}

unsigned long Logger_Impl::GetUnregistrationCount() const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  return mUnregistrationCount;
}

DispatcherList Logger_Impl::GetDispatchers() const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  return mDispatchers;
}
}  // namespace YLog

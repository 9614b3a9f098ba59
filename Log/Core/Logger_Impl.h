#pragma once

#include <cstddef>
#include <string>

#include <YBase/SmartPtrI.h>
#include <YLog/Logger.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/RWLock.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "Core/CallbackSet.h"
#include "Core/DispatcherList.h"

namespace YLog {

/// Dispatchers may belong to the client, so they are called with no lock held.
class Logger_Impl final : public Logger,
                          public Logger::DispatcherCollection,
                          public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  Logger_Impl(const char* name, YSynch::EnumORBLockStackCategory category);

  const char* GetName() const override { return mName.c_str(); }
  void SetResourceBundle(YResource::Bundle* bundle) override;
  YBase::SmartPtrI<YResource::Bundle> GetResourceBundle() const override;
  void RefreshConfiguration(ConfigurationHook& hook) override;
  void LogMessage(unsigned short cookie, const char* text, unsigned messageID, const char* fileName,
                  const char* funcName, int lineNumber) const override;
  void LogMessage(unsigned short cookie, const YBase::Message& message) const override;
  void LogMessage(unsigned short cookie, YBase::Message& message) const override;
  Logger::DispatcherCollection& Dispatchers() override { return *this; }
  void RegisterCallback(Callback* callback) override { mCallbacks.Register(callback); }
  void UnregisterCallback(const Callback* callback) noexcept override { mCallbacks.Unregister(callback); }
  void GetMessageTextJSON(unsigned short cookie, const char* text, unsigned messageID, const char* fileName,
                          const char* funcName, int lineNumber, std::string& out) const override;

  unsigned short ObtainCookie(const char* dispatcherName) override;
  YBase::SmartPtrI<Dispatcher> GetDispatcher(unsigned short cookie) const override;

 private:
  class CallbackProxy;
  struct NewDispatcher;

  ~Logger_Impl() override;
  void ReferenceCountIsAboutToReachZero() const override;

  /// Shows a dispatcher to the hook and returns it, or the one that the hook replaced it by.
  YBase::SmartPtrI<Dispatcher> Configure(const YBase::SmartPtrI<Dispatcher>& dispatcher,
                                         ConfigurationHook& hook);
  /// The same for a dispatcher that is not configured yet. The hook may ask this logger for it.
  YBase::SmartPtrI<Dispatcher> Configure(NewDispatcher& dispatcher, ConfigurationHook& hook);
  /// The place of a dispatcher that is being configured. It is added as it is if it has no place yet.
  std::size_t GetPlace(NewDispatcher& dispatcher);
  /// Lets the hook configure a new dispatcher and returns the place of the result.
  std::size_t GetPlaceWhenConfigured(NewDispatcher& dispatcher);

  std::size_t AddDispatcher(const YBase::SmartPtrI<Dispatcher>& dispatcher);
  /// Puts the configured dispatcher into the place of the one that was shown to the hook.
  void FinishPlace(std::size_t index, const YBase::SmartPtrI<Dispatcher>& shown,
                   const YBase::SmartPtrI<Dispatcher>& configured);
  void SetConfigured(std::size_t index, bool configured) noexcept;
  void ReplaceDispatcher(std::size_t index, const YBase::SmartPtrI<Dispatcher>& dispatcher);
  /// Registers the callback proxy with a dispatcher and then calls `put` under the lock to add it to the
  /// list.
  template <class Function>
  void PutIntoList(const YBase::SmartPtrI<Dispatcher>& dispatcher, Function put);
  /// To be called after a dispatcher was removed from a place. It may still be in another.
  void StopListeningTo(Dispatcher& dispatcher);
  /// Registers or unregisters the callback proxy, as `listed` says, and repeats that until it agrees with the
  /// list.
  void ListenAsTheListSays(Dispatcher& dispatcher, bool listed);

  void DispatcherChanged(const Dispatcher& dispatcher) const;
  /// Returns whether the dispatcher is in the list.
  bool NotifySubscribersOfPlacesOf(const Dispatcher& dispatcher) const;
  void NotifySubscribersThatDispatcherChanged(unsigned short cookie) const;

  unsigned long GetUnregistrationCount() const;
  YBase::SmartPtrI<Dispatcher> GetDispatcherAt(std::size_t index) const;
  DispatcherList GetDispatchers() const;

  const YBase::SmartPtrI<CallbackProxy> mpCallbackProxy;
  mutable YSynch::RWLock mLock;
  const std::string mName;
  YBase::SmartPtrI<YResource::Bundle> mpResourceBundle YSYNCH_GUARDED_BY(mLock);
  DispatcherList mDispatchers YSYNCH_GUARDED_BY(mLock);
  // How many times the callback proxy was unregistered from a dispatcher that had left the list.
  unsigned long mUnregistrationCount YSYNCH_GUARDED_BY(mLock) = 0;
  CallbackSet<Callback> mCallbacks;
};

}  // namespace YLog

#pragma once

#include <string>

#include <YBase/SmartPtrI.h>
#include <YLog/Logger.h>
#include <YLog/Router.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace YLog {

class Router_Impl final : public Router, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  /// Disabled, and not notified of changes, until `FollowDispatcher` is called.
  Router_Impl(const char* loggerName, const char* dispatcherName, YSynch::EnumORBLockStackCategory category);

  /// Sets `mEnabled`, now and at every change of the dispatcher.
  ///
  /// Not part of the constructor: another thread may report a change at once and then holds a reference to
  /// the router, even if this fails. \pre The caller holds a reference.
  void FollowDispatcher();

  Logger* GetLogger() const override { return mpLogger.Get(); }
  YBase::SmartPtrI<Dispatcher> GetDispatcher() const override;
  YBase::SmartPtrI<YResource::Bundle> GetResourceBundle() const override;
  void LogMessage(const char* text, unsigned messageID, const char* fileName, const char* funcName,
                  int lineNumber) const override;
  void LogMessage(const YBase::Message& message) const override;
  void LogMessage(YBase::Message& message) const override;
  void GetMessageTextJSON(const char* text, unsigned messageID, const char* fileName, const char* funcName,
                          int lineNumber, std::string& out) const override;

 private:
  class CallbackProxy;

  ~Router_Impl() override;
  void ReferenceCountIsAboutToReachZero() const override;

  void DispatcherChanged(unsigned short cookie);
  void UpdateEnabled();

  const YBase::SmartPtrI<CallbackProxy> mpCallbackProxy;
  const YBase::SmartPtrI<Logger> mpLogger;
  const unsigned short mCookie;
};

}  // namespace YLog

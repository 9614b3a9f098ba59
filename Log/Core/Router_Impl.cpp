#include "Core/Router_Impl.h"

#include "Core/BackPointer.h"

namespace YLog {

Router::~Router() = default;

YBase::SmartPtrI<Router> CreateRouter(const char* loggerName, const char* dispatcherName,
                                      YSynch::EnumORBLockStackCategory category) {
  YBase::SmartPtrI<Router_Impl> router(new Router_Impl(loggerName, dispatcherName, category));
  router->FollowDispatcher();
  return router;
}

/// The logger holds this instead of the router, which holds the logger: otherwise there would be a cycle of
/// references.
class Router_Impl::CallbackProxy final : public Logger::Callback,
                                         public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  void SetOwner(Router_Impl* owner) noexcept { mOwner.Set(owner); }

  void DispatcherChanged(unsigned short cookie) override {
    if (const YBase::SmartPtrI<Router_Impl> owner = mOwner.Get()) owner->DispatcherChanged(cookie);
  }

 private:
  ~CallbackProxy() override = default;

  BackPointer<Router_Impl> mOwner;
};

Router_Impl::Router_Impl(const char* loggerName, const char* dispatcherName,
                         YSynch::EnumORBLockStackCategory category)
    : mpCallbackProxy(new CallbackProxy),
      mpLogger(YLog::GetLogger(loggerName, category)),
      mCookie(mpLogger->Dispatchers().ObtainCookie(dispatcherName)) {}

Router_Impl::~Router_Impl() = default;

void Router_Impl::FollowDispatcher() {
  mpCallbackProxy->SetOwner(this);
  mpLogger->RegisterCallback(mpCallbackProxy.Get());
  UpdateEnabled();
}

void Router_Impl::ReferenceCountIsAboutToReachZero() const {
  mpCallbackProxy->SetOwner(nullptr);
  mpLogger->UnregisterCallback(mpCallbackProxy.Get());
}

YBase::SmartPtrI<Dispatcher> Router_Impl::GetDispatcher() const {
  return mpLogger->Dispatchers().GetDispatcher(mCookie);
}

YBase::SmartPtrI<YResource::Bundle> Router_Impl::GetResourceBundle() const {
  return mpLogger->GetResourceBundle();
}

void Router_Impl::LogMessage(const char* text, unsigned messageID, const char* fileName, const char* funcName,
                             int lineNumber) const {
  mpLogger->LogMessage(mCookie, text, messageID, fileName, funcName, lineNumber);
}

void Router_Impl::LogMessage(const YBase::Message& message) const {
  mpLogger->LogMessage(mCookie, message);
}

void Router_Impl::LogMessage(YBase::Message& message) const {
  mpLogger->LogMessage(mCookie, message);
}

void Router_Impl::GetMessageTextJSON(const char* text, unsigned messageID, const char* fileName,
                                     const char* funcName, int lineNumber, std::string& out) const {
  mpLogger->GetMessageTextJSON(mCookie, text, messageID, fileName, funcName, lineNumber, out);
}

void Router_Impl::DispatcherChanged(unsigned short cookie) {
  if (cookie == mCookie) UpdateEnabled();
}

void Router_Impl::UpdateEnabled() {
  // Two threads may be here at once, for two changes, and the one that read first may write last. Each
  // therefore reads again after writing. A thread whose last read saw the old state wrote before the other's
  // change, and so before the other wrote.
  bool enabled = GetDispatcher()->IsEnabled();
  bool written = false;
  do {
    written = enabled;
    // Relaxed: the next read takes the dispatcher's lock, which orders this before what the other thread
    // writes.
    mEnabled.store(written, std::memory_order_relaxed);
    enabled = GetDispatcher()->IsEnabled();
  } while (enabled != written);
}

}  // namespace YLog

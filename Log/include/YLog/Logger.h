#pragma once

#include <string>

#include <YBase/Message.h>
#include <YBase/ReferenceCounted.h>
#include <YBase/SmartPtrI.h>
#include <YLog/Dispatcher.h>
#include <YLog/Export.h>
#include <YResource/Bundle.h>
#include <YSynch/LockStackCategory.h>

namespace YLog {

class ConfigurationHook;

/// A named source of messages. It passes them to its dispatchers, each of which is identified by a cookie.
///
/// A cookie is the dispatcher's place in the logger's list, exclusive-ored with 0xDAFF. It is valid for the
/// logger that issued it as long as that logger exists, even if the dispatcher in that place is replaced.
///
/// Ownership: counted; the library keeps each logger until it stops. Holds its dispatchers, its catalogue and
/// its callbacks.
///
/// Threads: any thread may call any operation.
///
/// Reentrancy: dispatchers, callbacks and the configuration hook are called with no lock held.
///
/// Failure: what they throw reaches the caller.
class YLOG_EXPORT Logger : public virtual YBase::ReferenceCounted {
 public:
  class DispatcherCollection;
  class Callback;

  virtual const char* GetName() const = 0;

  /// The catalogue of this logger's texts. Null removes it.
  virtual void SetResourceBundle(YResource::Bundle* bundle) = 0;
  virtual YBase::SmartPtrI<YResource::Bundle> GetResourceBundle() const = 0;

  /// Calls the hook for every dispatcher, in the order of the list. If the hook replaces a dispatcher, the
  /// new one has the same cookie, and the callbacks are called. If the hook throws, the dispatchers that it
  /// was shown before keep what it gave them.
  virtual void RefreshConfiguration(ConfigurationHook& hook) = 0;

  /// Passes a text to the dispatcher with that cookie. If this logger did not issue the cookie, the text is
  /// dropped. File and function may be null. \pre `text` is not null.
  virtual void LogMessage(unsigned short cookie, const char* text, unsigned messageID, const char* fileName,
                          const char* funcName, int lineNumber) const = 0;
  /// The same with a structured message; see `Dispatcher::LogMessage`.
  virtual void LogMessage(unsigned short cookie, const YBase::Message& message) const = 0;
  virtual void LogMessage(unsigned short cookie, YBase::Message& message) const = 0;

  /// The logger's dispatchers; valid as long as the logger.
  virtual DispatcherCollection& Dispatchers() = 0;

  /// As in `Dispatcher`.
  virtual void RegisterCallback(Callback* callback) = 0;
  virtual void UnregisterCallback(const Callback* callback) noexcept = 0;

  /// As `Dispatcher::GetMessageTextJSON`, for the dispatcher with that cookie. If this logger did not issue
  /// the cookie, `out` stays as it is.
  virtual void GetMessageTextJSON(unsigned short cookie, const char* text, unsigned messageID,
                                  const char* fileName, const char* funcName, int lineNumber,
                                  std::string& out) const = 0;

 protected:
  ~Logger() override;
};

/// A logger's dispatchers.
class YLOG_EXPORT Logger::DispatcherCollection {
 public:
  /// The cookie of the first dispatcher with that name. If there is none, one is created, passed to the
  /// configuration hook and added. If two threads request a new name at once, both may add one. If the hook
  /// throws, none is added, unless the hook itself had requested it; then the next request calls the hook for
  /// it again. \pre `dispatcherName` is not null.
  ///
  /// Failure: what the hook throws; `YBase::ExceptionImpl<YBase::Message>` if the logger already has 65,536
  /// dispatchers; `std::bad_alloc`.
  virtual unsigned short ObtainCookie(const char* dispatcherName) = 0;

  /// The dispatcher with a cookie; null if this logger did not issue the cookie.
  virtual YBase::SmartPtrI<Dispatcher> GetDispatcher(unsigned short cookie) const = 0;

 protected:
  DispatcherCollection() = default;
  DispatcherCollection(const DispatcherCollection&) = default;
  DispatcherCollection& operator=(const DispatcherCollection&) = default;
  ~DispatcherCollection() = default;
};

/// Is called when a dispatcher of a logger has other destinations, or has been replaced.
class YLOG_EXPORT Logger::Callback : public virtual YBase::ReferenceCounted {
 public:
  /// Called with no lock held, by the thread that made the change.
  virtual void DispatcherChanged(unsigned short cookie) = 0;

 protected:
  ~Callback() override;
};

/// The logger with that name. The first request creates it and passes it to the configuration hook. Names are
/// compared byte by byte. The category is that of a new logger's lock. \pre `name` is not null.
///
/// Failure: what the hook throws, and `std::bad_alloc`; the logger is then not registered.
YLOG_EXPORT YBase::SmartPtrI<Logger> GetLogger(const char* name, YSynch::EnumORBLockStackCategory category);

}  // namespace YLog

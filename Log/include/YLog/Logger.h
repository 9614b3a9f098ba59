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

/// A named source of messages. Messages leave it through dispatchers, each known by a cookie.
///
/// A cookie is the dispatcher's place in the logger's list, exclusive-ored with 0xDAFF. It is valid for the
/// logger that issued it, for as long as that lives, whatever becomes of the dispatcher behind it.
///
/// Ownership: counted; the module keeps each logger until it stops. Holds its dispatchers, its catalogue and
/// its callbacks.
///
/// Threads: any operation from any thread.
///
/// Reentrancy: dispatchers, callbacks and the configuration hook are called with no lock held.
///
/// Failure: what they throw goes to the caller.
class YLOG_EXPORT Logger : public virtual YBase::ReferenceCounted {
 public:
  class DispatcherCollection;
  class Callback;

  virtual const char* GetName() const = 0;

  /// The catalogue of this logger's texts. Null takes it away.
  virtual void SetResourceBundle(YResource::Bundle* bundle) = 0;
  virtual YBase::SmartPtrI<YResource::Bundle> GetResourceBundle() const = 0;

  /// Shows every dispatcher to the hook, in the order of the list. One that the hook replaces keeps its
  /// cookie, and the callbacks are told. When the hook throws, the dispatchers before keep what they got.
  virtual void RefreshConfiguration(ConfigurationHook& hook) = 0;

  /// Hands a text to the dispatcher behind the cookie. A cookie that this logger did not issue drops it.
  /// File and function may be null. \pre `text` is not null.
  virtual void LogMessage(unsigned short cookie, const char* text, unsigned messageID, const char* fileName,
                          const char* funcName, int lineNumber) const = 0;
  /// The same with a structured message; see `Dispatcher::LogMessage`.
  virtual void LogMessage(unsigned short cookie, const YBase::Message& message) const = 0;
  virtual void LogMessage(unsigned short cookie, YBase::Message& message) const = 0;

  /// The logger's dispatchers: valid as long as the logger.
  virtual DispatcherCollection& Dispatchers() = 0;

  /// As in `Dispatcher`.
  virtual void RegisterCallback(Callback* callback) = 0;
  virtual void UnregisterCallback(const Callback* callback) noexcept = 0;

  /// As `Dispatcher::GetMessageTextJSON`, of the dispatcher behind the cookie. For a cookie that this logger
  /// did not issue, `out` stays as it is.
  virtual void GetMessageTextJSON(unsigned short cookie, const char* text, unsigned messageID,
                                  const char* fileName, const char* funcName, int lineNumber,
                                  std::string& out) const = 0;

 protected:
  ~Logger() override;
};

/// A logger's dispatchers.
class YLOG_EXPORT Logger::DispatcherCollection {
 public:
  /// The cookie of the first dispatcher of that name. Where there is none, one is created, shown to the
  /// configuration hook and added. Two threads that ask for a new name at once may both add one. Where the
  /// hook throws, none is added, unless the hook itself had asked for it; the hook is then shown it at the
  /// next request. \pre `dispatcherName` is not null.
  ///
  /// Failure: what the hook throws; `YBase::ExceptionImpl<YBase::Message>` if the logger has 65,536
  /// dispatchers already; `std::bad_alloc`.
  virtual unsigned short ObtainCookie(const char* dispatcherName) = 0;

  /// The dispatcher behind a cookie, or null for one that this logger did not issue.
  virtual YBase::SmartPtrI<Dispatcher> GetDispatcher(unsigned short cookie) const = 0;

 protected:
  DispatcherCollection() = default;
  DispatcherCollection(const DispatcherCollection&) = default;
  DispatcherCollection& operator=(const DispatcherCollection&) = default;
  ~DispatcherCollection() = default;
};

/// Hears when a dispatcher of a logger got other destinations, or was replaced.
class YLOG_EXPORT Logger::Callback : public virtual YBase::ReferenceCounted {
 public:
  /// Called with no lock held, by the thread that made the change.
  virtual void DispatcherChanged(unsigned short cookie) = 0;

 protected:
  ~Callback() override;
};

/// The logger of that name, made and shown to the configuration hook when it is first asked for. Names are
/// compared byte by byte. The category is that of a new logger's lock. \pre `name` is not null.
///
/// Failure: what the hook throws, and `std::bad_alloc`; the logger is then not registered.
YLOG_EXPORT YBase::SmartPtrI<Logger> GetLogger(const char* name, YSynch::EnumORBLockStackCategory category);

}  // namespace YLog

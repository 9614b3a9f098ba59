#pragma once

#include <atomic>
#include <string>

#include <YBase/Message.h>
#include <YBase/ReferenceCounted.h>
#include <YBase/SmartPtrI.h>
#include <YLog/Dispatcher.h>
#include <YLog/Export.h>
#include <YResource/Bundle.h>
#include <YSynch/LockStackCategory.h>

namespace YLog {

class Logger;

/// What client code logs through: a logger with one of its dispatchers.
///
/// Ownership: counted. Holds its logger.
///
/// Threads: any thread may call any operation.
///
/// Failure: what a destination throws reaches the caller, and `std::bad_alloc`.
class YLOG_EXPORT Router : public virtual YBase::ReferenceCounted {
 public:
  /// Whether the dispatcher has a destination; the router keeps it up to date. Read it before formatting a
  /// message, with relaxed memory order: if a change is seen late, a message is formatted needlessly or left
  /// out.
  std::atomic<bool> mEnabled{false};

  /// The logger; no reference is added.
  virtual Logger* GetLogger() const = 0;
  virtual YBase::SmartPtrI<Dispatcher> GetDispatcher() const = 0;
  virtual YBase::SmartPtrI<YResource::Bundle> GetResourceBundle() const = 0;

  /// Passes a text to the logger. Does not test `mEnabled`. File and function may be null.
  /// \pre `text` is not null.
  virtual void LogMessage(const char* text, unsigned messageID, const char* fileName, const char* funcName,
                          int lineNumber) const = 0;
  /// The same with a structured message; see `Dispatcher::LogMessage`.
  virtual void LogMessage(const YBase::Message& message) const = 0;
  virtual void LogMessage(YBase::Message& message) const = 0;

  /// As `Dispatcher::GetMessageTextJSON`. Does not test `mEnabled`.
  virtual void GetMessageTextJSON(const char* text, unsigned messageID, const char* fileName,
                                  const char* funcName, int lineNumber, std::string& out) const = 0;

 protected:
  ~Router() override;
};

/// A router for the dispatcher `dispatcherName` of the logger `loggerName`. If either does not exist, it is
/// created and passed to the configuration hook. The category is that of a new logger's lock.
/// \pre Neither name is null.
///
/// Failure: what `GetLogger` and `Logger::DispatcherCollection::ObtainCookie` throw. A logger or dispatcher
/// that was created before the failure stays.
YLOG_EXPORT YBase::SmartPtrI<Router> CreateRouter(const char* loggerName, const char* dispatcherName,
                                                  YSynch::EnumORBLockStackCategory category);

}  // namespace YLog

#pragma once

#include <YBase/ReferenceCounted.h>
#include <YBase/SmartPtrI.h>
#include <YLog/Export.h>

namespace YLog {

class Dispatcher;
class Logger;

/// Decides what is logged where. Implemented by the client.
///
/// Threads: either operation may be called by any thread that requests a logger or a router, and by several
/// at once.
///
/// Reentrancy: called with no lock of the library held. It may request the logger or dispatcher that is being
/// configured, by name, and log through it. The request returns that object in its present state, and does
/// not call the hook for it again.
///
/// Failure: what it throws reaches the caller that requested the logger, the router or the refresh.
class YLOG_EXPORT ConfigurationHook : public virtual YBase::ReferenceCounted {
 public:
  /// Called for each new logger before other threads can find it, and for every logger at a refresh. If two
  /// threads create a logger of the same name at once, the hook is called for both, and one of the two is
  /// kept.
  virtual void ConfigureLogger(Logger& logger) = 0;

  /// Called for each new dispatcher, and for every dispatcher at a refresh. It gives the dispatcher its
  /// destinations, or replaces it with another one, which must not be null. If it is null, the dispatcher
  /// stays as it is.
  virtual void ConfigureDispatcher(YBase::SmartPtrI<Dispatcher>& dispatcher, Logger& logger) = 0;

 protected:
  ~ConfigurationHook() override;
};

/// Installs a hook, which is held until it is replaced or the library stops; null removes the present one.
/// For loggers and dispatchers that already exist, the hook is not called until `RefreshConfiguration`.
YLOG_EXPORT void SetConfigurationHook(ConfigurationHook* hook);
YLOG_EXPORT YBase::SmartPtrI<ConfigurationHook> GetConfigurationHook();

/// Calls the hook again for every logger, in the order of their names, and for each of its dispatchers. Does
/// nothing without a hook. If the hook throws, the refresh ends there.
YLOG_EXPORT void RefreshConfiguration();

}  // namespace YLog

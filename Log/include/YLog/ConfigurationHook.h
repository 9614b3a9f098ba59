#pragma once

#include <YBase/ReferenceCounted.h>
#include <YBase/SmartPtrI.h>
#include <YLog/Export.h>

namespace YLog {

class Dispatcher;
class Logger;

/// The client's say in what is logged where. Implemented by the client.
///
/// Threads: either operation may be called by any thread that asks for a logger or a router, several at once.
///
/// Reentrancy: called with no lock of the library held. It may ask for the logger or dispatcher that it is
/// being shown, by name, and log through it: it is given that one as it is at that moment, and is not shown
/// it again.
///
/// Failure: what it throws reaches whoever asked for the logger or router, or for the refresh.
class YLOG_EXPORT ConfigurationHook : public virtual YBase::ReferenceCounted {
 public:
  /// Called for each new logger before others can see it, and for every logger at a refresh. Of two loggers
  /// of one name made at once, both are shown and one is kept.
  virtual void ConfigureLogger(Logger& logger) = 0;

  /// Called for each new dispatcher and for every dispatcher at a refresh: gives it its destinations, or
  /// puts another dispatcher in its place, which must not be null. Null leaves the dispatcher as it is.
  virtual void ConfigureDispatcher(YBase::SmartPtrI<Dispatcher>& dispatcher, Logger& logger) = 0;

 protected:
  ~ConfigurationHook() override;
};

/// Installs a hook, which is held until it is replaced or the module stops; null takes it away. Loggers and
/// dispatchers that are there already are shown to it by `RefreshConfiguration`.
YLOG_EXPORT void SetConfigurationHook(ConfigurationHook* hook);
YLOG_EXPORT YBase::SmartPtrI<ConfigurationHook> GetConfigurationHook();

/// Shows every logger, in the order of their names, and each of its dispatchers to the hook again. Does
/// nothing without a hook. What the hook throws ends it there.
YLOG_EXPORT void RefreshConfiguration();

}  // namespace YLog

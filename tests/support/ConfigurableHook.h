#pragma once

#include <functional>
#include <utility>

#include <YBase/SmartPtrI.h>
#include <YLog/ConfigurationHook.h>
#include <YLog/Dispatcher.h>
#include <YLog/Logger.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace Support {

/// A client's hook that runs actions of the test. Threads: as for the actions.
class ConfigurableHook final : public YLog::ConfigurationHook,
                               public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  using OnDispatcher = std::function<void(YBase::SmartPtrI<YLog::Dispatcher>&, YLog::Logger&)>;
  using OnLogger = std::function<void(YLog::Logger&)>;

  explicit ConfigurableHook(OnDispatcher onDispatcher = nullptr, OnLogger onLogger = nullptr,
                            std::function<void()> onDestruction = nullptr)
      : mOnDispatcher(std::move(onDispatcher)),
        mOnLogger(std::move(onLogger)),
        mOnDestruction(std::move(onDestruction)) {}

  void ConfigureLogger(YLog::Logger& logger) override {
    if (mOnLogger) mOnLogger(logger);
  }
  void ConfigureDispatcher(YBase::SmartPtrI<YLog::Dispatcher>& dispatcher, YLog::Logger& logger) override {
    if (mOnDispatcher) mOnDispatcher(dispatcher, logger);
  }

 private:
  ~ConfigurableHook() override {
    if (mOnDestruction) mOnDestruction();
  }

  const OnDispatcher mOnDispatcher;
  const OnLogger mOnLogger;
  const std::function<void()> mOnDestruction;
};

}  // namespace Support

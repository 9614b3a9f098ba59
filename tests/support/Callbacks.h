#pragma once

#include <functional>
#include <utility>

#include <YLog/Dispatcher.h>
#include <YLog/Logger.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace Support {

/// Is called for a dispatcher's changes: counts them, and runs an action of the test.
class DispatcherCallback final : public YLog::Dispatcher::Callback,
                                 public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  using Action = std::function<void(YLog::Dispatcher&)>;

  explicit DispatcherCallback(Action onChange = nullptr, std::function<void()> onDestruction = nullptr)
      : mOnChange(std::move(onChange)), mOnDestruction(std::move(onDestruction)) {}

  void DispatcherChanged(YLog::Dispatcher& dispatcher) override {
    mCount.Increment();
    if (mOnChange) mOnChange(dispatcher);
  }
  long GetCount() const { return mCount.Get(); }

 private:
  ~DispatcherCallback() override {
    if (mOnDestruction) mOnDestruction();
  }

  const Action mOnChange;
  const std::function<void()> mOnDestruction;
  YSynch::AtomicLong mCount;
};

/// Is called for the changes of a logger's dispatchers, and runs an action of the test.
class LoggerCallback final : public YLog::Logger::Callback,
                             public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  using Action = std::function<void(unsigned short cookie)>;

  explicit LoggerCallback(Action onChange) : mOnChange(std::move(onChange)) {}

  void DispatcherChanged(unsigned short cookie) override { mOnChange(cookie); }

 private:
  ~LoggerCallback() override = default;

  const Action mOnChange;
};

}  // namespace Support

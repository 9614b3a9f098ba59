#pragma once

#include <string>

#include <YBase/SmartPtrI.h>
#include <YLog/Dispatcher.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/RWLock.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "Core/CallbackSet.h"
#include "Core/DestinationList.h"

namespace YLog {

class MessageHeader;
class MessageUnderWay;

class Dispatcher_Impl final : public Dispatcher, public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit Dispatcher_Impl(const char* name);

  const char* GetName() const override { return mName.c_str(); }
  bool IsEnabled() const override { return static_cast<bool>(GetDestinations()); }
  void LogMessage(const Logger& logger, const char* text, unsigned messageID, const char* fileName,
                  const char* funcName, int lineNumber) const override;
  void LogMessage(const Logger& logger, const YBase::Message& message) const override;
  void LogMessage(const Logger& logger, YBase::Message& message) const override;
  void SetDestinations(const YDataType::ObjectCollection<Destination>& destinations) override;
  void RegisterCallback(Callback* callback) override { mCallbacks.Register(callback); }
  void UnregisterCallback(const Callback* callback) noexcept override { mCallbacks.Unregister(callback); }
  void GetMessageTextJSON(const Logger& logger, const char* text, unsigned messageID, const char* fileName,
                          const char* funcName, int lineNumber, std::string& out) const override;

 private:
  ~Dispatcher_Impl() override = default;

  void Dispatch(const DestinationList& destinations, MessageUnderWay& underWay, const Logger& logger,
                const YBase::Message& message) const;
  void hFillMessageHeader(MessageHeader& header, const char* loggerName, unsigned messageID,
                          const char* fileName, const char* funcName, int lineNumber) const;

  YBase::SmartPtrI<const DestinationList> GetDestinations() const;

  mutable YSynch::RWLock mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  const std::string mName;
  // Null if there is no destination.
  YBase::SmartPtrI<const DestinationList> mpDestinations YSYNCH_GUARDED_BY(mLock);
  CallbackSet<Callback> mCallbacks;
};

}  // namespace YLog

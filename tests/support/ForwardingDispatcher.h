#pragma once

#include <string>
#include <utility>

#include <YBase/Message.h>
#include <YBase/SmartPtrI.h>
#include <YDataType/ObjectCollection.h>
#include <YLog/Destination.h>
#include <YLog/Dispatcher.h>
#include <YLog/Logger.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace Support {

/// A client's dispatcher that delegates everything to another one. Tests override the operations in which
/// they intervene.
class ForwardingDispatcher : public YLog::Dispatcher,
                             public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit ForwardingDispatcher(YBase::SmartPtrI<YLog::Dispatcher> inner) : mpInner(std::move(inner)) {}

  const char* GetName() const override { return mpInner->GetName(); }
  bool IsEnabled() const override { return mpInner->IsEnabled(); }
  void LogMessage(const YLog::Logger& logger, const char* text, unsigned messageID, const char* fileName,
                  const char* funcName, int lineNumber) const override {
    mpInner->LogMessage(logger, text, messageID, fileName, funcName, lineNumber);
  }
  void LogMessage(const YLog::Logger& logger, const YBase::Message& message) const override {
    mpInner->LogMessage(logger, message);
  }
  void LogMessage(const YLog::Logger& logger, YBase::Message& message) const override {
    mpInner->LogMessage(logger, message);
  }
  void SetDestinations(const YDataType::ObjectCollection<YLog::Destination>& destinations) override {
    mpInner->SetDestinations(destinations);
  }
  void RegisterCallback(Callback* callback) override { mpInner->RegisterCallback(callback); }
  void UnregisterCallback(const Callback* callback) noexcept override {
    mpInner->UnregisterCallback(callback);
  }
  void GetMessageTextJSON(const YLog::Logger& logger, const char* text, unsigned messageID,
                          const char* fileName, const char* funcName, int lineNumber,
                          std::string& out) const override {
    mpInner->GetMessageTextJSON(logger, text, messageID, fileName, funcName, lineNumber, out);
  }

 protected:
  ~ForwardingDispatcher() override = default;

  YLog::Dispatcher& Inner() const { return *mpInner; }

 private:
  const YBase::SmartPtrI<YLog::Dispatcher> mpInner;
};

}  // namespace Support

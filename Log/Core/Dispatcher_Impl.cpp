#include "Core/Dispatcher_Impl.h"

#include <utility>

#include <YBase/NullText.h>
#include <YLog/Logger.h>
#include <YLog/MessageBody.h>
#include <YLog/MessageHeader.h>

#include "Core/MessageUnderWay.h"
#include "ModuleMain.h"

namespace YLog {

Dispatcher::~Dispatcher() = default;
Dispatcher::Callback::~Callback() = default;

YBase::SmartPtrI<Dispatcher> CreateDispatcher(const char* name) {
  return YBase::SmartPtrI<Dispatcher>(new Dispatcher_Impl(name));
}

Dispatcher_Impl::Dispatcher_Impl(const char* name) : mName(YBase::NotNull(name)) {}

void Dispatcher_Impl::LogMessage(const Logger& logger, const char* text, unsigned messageID,
                                 const char* fileName, const char* funcName, int lineNumber) const {
  text = YBase::NotNull(text);
  // The lock is taken once, both for the list and for whether there is a destination at all.
  const YBase::SmartPtrI<const DestinationList> destinations = GetDestinations();
  if (!destinations) return;
  const MessageUnderWay message;
  hFillMessageHeader(message.GetHeader(), logger.GetName(), messageID, fileName, funcName, lineNumber);
  destinations->LogMessage(text, message.GetHeader());
}

void Dispatcher_Impl::LogMessage(const Logger& logger, const YBase::Message& message) const {
  const YBase::SmartPtrI<const DestinationList> destinations = GetDestinations();
  if (!destinations) return;
  MessageUnderWay underWay;
  Dispatch(*destinations, underWay, logger, message);
}

void Dispatcher_Impl::LogMessage(const Logger& logger, YBase::Message& message) const {
  const YBase::SmartPtrI<const DestinationList> destinations = GetDestinations();
  if (!destinations) return;
  MessageUnderWay underWay;
  Dispatch(*destinations, underWay, logger, message);
  message = underWay.GetBody().GetMessage();
}

void Dispatcher_Impl::Dispatch(const DestinationList& destinations, MessageUnderWay& underWay,
                               const Logger& logger, const YBase::Message& message) const {
  hFillMessageHeader(underWay.GetHeader(), logger.GetName(), message.GetID(), nullptr, nullptr, 0);
  underWay.GetBody().SetMessage(message);
  destinations.LogMessage(underWay.GetHeader(), underWay.GetBody());
}

void Dispatcher_Impl::hFillMessageHeader(MessageHeader& header, const char* loggerName, unsigned messageID,
                                         const char* fileName, const char* funcName, int lineNumber) const {
  header.SetTimestampToNowLocal();
  header.SetLoggerName(loggerName);
  header.SetDispatcherName(GetName());
  header.SetFileName(fileName);
  header.SetFuncName(funcName);
  header.SetLineNumber(lineNumber);
  header.SetMessageID(messageID);
  gModuleMainPtr->CopyServerInstanceNameTo(header);
}

void Dispatcher_Impl::SetDestinations(const YDataType::ObjectCollection<Destination>& destinations) {
  YBase::SmartPtrI<const DestinationList> list;
  if (destinations.GetCount() > 0) {
    list = YBase::SmartPtrI<const DestinationList>(new DestinationList(destinations));
  }
  {
    const YSynch::RWLock::WriteSmartLock lock(mLock);
    std::swap(mpDestinations, list);
  }
  // The list that was replaced is released at the end, after the callbacks and with no lock held.
  mCallbacks.ForEach([this](Callback& callback) { callback.DispatcherChanged(*this); });
}

void Dispatcher_Impl::GetMessageTextJSON(const Logger& logger, const char* /*text*/, unsigned messageID,
                                         const char* fileName, const char* funcName, int lineNumber,
                                         std::string& out) const {
  const MessageUnderWay message;
  hFillMessageHeader(message.GetHeader(), logger.GetName(), messageID, fileName, funcName, lineNumber);
  out = message.GetHeader().ToJsonString();
}

YBase::SmartPtrI<const DestinationList> Dispatcher_Impl::GetDestinations() const {
  const YSynch::RWLock::ReadSmartLock lock(mLock);
  return mpDestinations;
}

}  // namespace YLog

#include "MessageModel/MessageHeader_Impl.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include <YBase/NullText.h>

#include "MessageModel/HeaderJson.h"
#include "MessageModel/HeaderTextLine.h"
#include "ModuleMain.h"

namespace YLog {

namespace {

constexpr std::size_t TEXT_LINE_CAPACITY = 256;

}  // namespace

MessageHeader::~MessageHeader() = default;

YBase::SmartPtrI<MessageHeader> CreateMessageHeader() {
  return YBase::SmartPtrI<MessageHeader>(new MessageHeader_Impl);
}

YBase::SmartPtrI<MessageHeader> CopyMessageHeader(const MessageHeader& header) {
  const HeaderFields& fields = dynamic_cast<const MessageHeader_Impl&>(header).GetFields();
  return YBase::SmartPtrI<MessageHeader>(new MessageHeader_Impl(fields));
}

void MessageHeader_Impl::SetComputerName(const char* name) {
  mFields.computerName = YBase::NotNull(name);
}

void MessageHeader_Impl::SetServerInstanceName(const char* name) {
  mServerInstanceName = YBase::EmptyIfNull(name);
}

void MessageHeader_Impl::SetProcessID(unsigned id) {
  if (mFields.processID.Set(id)) DiscardTextForms();
}

void MessageHeader_Impl::SetProcessIDDecimalString(const char* text) {
  mFields.processID.SetDecimalText(YBase::NotNull(text));
}

void MessageHeader_Impl::SetProcessIDHexString(const char* text) {
  SetProcessID(YBase::HexToUnsignedInt(YBase::NotNull(text), false));
}

void MessageHeader_Impl::SetThreadID(unsigned long id) {
  if (mFields.threadID.Set(id)) DiscardTextForms();
}

void MessageHeader_Impl::SetThreadIDDecimalString(const char* text) {
  mFields.threadID.SetDecimalText(YBase::NotNull(text));
}

void MessageHeader_Impl::SetThreadIDHexString(const char* text) {
  SetThreadID(YBase::HexToUnsignedInt(YBase::NotNull(text), false));
}

void MessageHeader_Impl::SetTimestamp(const Timestamp& timestamp) {
  mFields.timestampText.clear();
  DiscardTextForms();
  mFields.timestamp = timestamp;
}

void MessageHeader_Impl::SetTimestampToNowLocal() {
  mFields.timestampText.clear();
  DiscardTextForms();
  mFields.timestamp.SetToNowLocal();
}

const char* MessageHeader_Impl::GetTimestampISO8601String() const {
  if (mFields.timestampText.empty()) mFields.timestamp.AppendISO8601String(mFields.timestampText);
  return mFields.timestampText.c_str();
}

unsigned MessageHeader_Impl::SetTimestampISO8601String(const char* text) {
  Timestamp_Impl parsed;
  const unsigned count = parsed.FromISO8601String(YBase::NotNull(text));
  if (count == 0) return 0;
  mFields.timestampText.assign(text, count);
  mFields.timestamp = parsed;
  return count;
}

void MessageHeader_Impl::SetLoggerName(const char* name) {
  mFields.loggerName = YBase::NotNull(name);
}

int MessageHeader_Impl::SetDispatcherName(const char* name) {
  static constexpr std::string_view lErrorDispatcherName = "Error";
  mFields.dispatcherName = YBase::NotNull(name);
  const int order = lErrorDispatcherName.compare(mFields.dispatcherName);
  mIsErrorDispatcher = order == 0;
  return order;
}

void MessageHeader_Impl::SetMessageID(unsigned id) {
  if (mFields.messageID.Set(id)) DiscardTextForms();
}

void MessageHeader_Impl::SetMessageIDHexString(const char* text) {
  SetMessageID(YBase::HexToUnsignedInt(YBase::NotNull(text), false));
}

const char* MessageHeader_Impl::ToString() const {
  if (!mTextLine.empty()) return mTextLine.c_str();
  try {
    mTextLine.reserve(TEXT_LINE_CAPACITY);
    AppendHeaderTextLine(mTextLine, *this);
  } catch (...) {
    // Otherwise the next call would take half a line for a whole one.
    mTextLine.clear();
    throw;
  }
  return mTextLine.c_str();
}

const char* MessageHeader_Impl::ToJsonString() const {
  if (mJsonText.empty()) mJsonText = BuildHeaderJson(*this);
  return mJsonText.c_str();
}

unsigned MessageHeader_Impl::FromString(const char* line) {
  MessageHeader_Impl parsed;
  const unsigned count = ReadHeaderTextLine(YBase::NotNull(line), parsed);
  if (count == 0) return 0;
  std::swap(mFields, parsed.mFields);
  DiscardTextForms();
  return count;
}

void MessageHeader_Impl::DiscardTextForms() const noexcept {
  mTextLine.clear();
  mJsonText.clear();
}

void MessageHeader_Impl::SetFileName(const char* name) {
  mFields.fileName = YBase::EmptyIfNull(name);
}

void MessageHeader_Impl::SetFuncName(const char* name) {
  mFields.funcName = YBase::EmptyIfNull(name);
}

void MessageHeader_Impl::SetUserID(const char* id) {
  mFields.userID = YBase::EmptyIfNull(id);
}

void MessageHeader_Impl::SetSessionID(const char* id) {
  mFields.sessionID = YBase::EmptyIfNull(id);
}

void MessageHeader_Impl::SetObjectID(const char* id) {
  mFields.objectID = YBase::EmptyIfNull(id);
}

}  // namespace YLog

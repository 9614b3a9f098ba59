#include "MessageModel/MessageHeader_Impl.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>

#include <YBase/NumberText.h>
#include <YFileSystem/Path.h>

#include "MessageModel/HeaderJson.h"
#include "MessageModel/SourcePosition.h"

namespace YLog {

namespace {

constexpr const char* SEPARATOR_TIMESTAMP_HOST = " [HOST:";
constexpr const char* SEPARATOR_HOST_SERVER = "][SERVER:";
constexpr const char* SEPARATOR_SERVER_PID = "][PID:";
constexpr const char* SEPARATOR_PID_THR = "][THR:";
constexpr const char* SEPARATOR_THR_LOGGER = "][";
constexpr const char* SEPARATOR_LOGGER_DISPATCHER = "][";
constexpr const char* DELIMITER_BEFORE_MESSAGE_ID = "[0x";
constexpr const char* DELIMITER_END = "]";
constexpr const char* DELIMITER_BEFORE_USER_ID = "[UID:";
constexpr const char* DELIMITER_BEFORE_SESSION_ID = "[SID:";
constexpr const char* DELIMITER_BEFORE_OBJECT_ID = "[OID:";

constexpr std::size_t TEXT_LINE_CAPACITY = 256;

const char* OrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

const char* NotNull(const char* text) {
  assert(text != nullptr);
  return OrEmpty(text);
}

const char* DecimalText(std::string& cache, unsigned long value) {
  if (cache.empty()) AppendUnsignedLongDecimalToString(cache, value, 1);
  return cache.c_str();
}

const char* HexText(std::string& cache, unsigned value, std::size_t minDigits) {
  if (!cache.empty()) return cache.c_str();
  char digits[sizeof(value) * 2];
  char* const end = std::end(digits);
  char* first = end;
  for (; value != 0; value >>= 4) *--first = "0123456789ABCDEF"[value & 0xFU];
  const auto count = std::max(static_cast<std::size_t>(end - first), minDigits);
  std::fill(end - count, first, '0');
  return cache.assign(end - count, end).c_str();
}

void AppendID(std::string& line, const char* delimiter, const char* id) {
  static constexpr std::string_view NO_ID = "0";
  line += delimiter;
  line += *id != '\0' ? std::string_view(id) : NO_ID;
  line += DELIMITER_END;
}

void AppendInt(std::string& line, int value) {
  if (value < 0) line += '-';
  const auto bits = static_cast<unsigned>(value);
  AppendUnsignedLongDecimalToString(line, value < 0 ? 0U - bits : bits, 1);
}

/// A record is one line and those that its text adds: a name with a line break would forge another record.
void BlankOutLineBreaks(std::string& line) noexcept {
  for (const char lineBreak : {'\r', '\n'}) {
    for (std::size_t at = line.find(lineBreak); at != std::string::npos; at = line.find(lineBreak, at + 1)) {
      line[at] = ' ';
    }
  }
}

/// Moves behind `prefix` where the text at `position` begins with it.
bool Skip(const char*& position, std::string_view prefix) {
  if (std::strncmp(position, prefix.data(), prefix.size()) != 0) return false;
  position += prefix.size();
  return true;
}

}  // namespace

MessageHeader::~MessageHeader() = default;

YBase::SmartPtrI<MessageHeader> CreateMessageHeader() {
  return YBase::SmartPtrI<MessageHeader>(new MessageHeader_Impl);
}

void MessageHeader_Impl::SetComputerName(const char* name) {
  mComputerName = NotNull(name);
}
void MessageHeader_Impl::SetServerInstanceName(const char* name) {
  mServerInstanceName = OrEmpty(name);
}

void MessageHeader_Impl::SetProcessID(unsigned id) {
  if (id == mProcessID) return;
  mProcessIDDecimalText.clear();
  mProcessIDHexText.clear();
  DiscardTextForms();
  mProcessID = id;
}

const char* MessageHeader_Impl::GetProcessIDDecimalString() const {
  return DecimalText(mProcessIDDecimalText, mProcessID);
}

void MessageHeader_Impl::SetProcessIDDecimalString(const char* text) {
  // The number is read and the text copied first: the text may be one of those that are cleared.
  const int id = YBase::DecimalToInt(text);
  mProcessIDDecimalText = NotNull(text);
  mProcessIDHexText.clear();
  mProcessID = static_cast<unsigned>(id);
}

const char* MessageHeader_Impl::GetProcessIDHexString() const {
  return HexText(mProcessIDHexText, mProcessID, 1);
}

void MessageHeader_Impl::SetProcessIDHexString(const char* text) {
  SetProcessID(YBase::HexToUnsignedInt(NotNull(text), false));
}

void MessageHeader_Impl::SetThreadID(unsigned long id) {
  if (id == mThreadID) return;
  mThreadIDDecimalText.clear();
  mThreadIDHexText.clear();
  DiscardTextForms();
  mThreadID = id;
}

const char* MessageHeader_Impl::GetThreadIDDecimalString() const {
  return DecimalText(mThreadIDDecimalText, mThreadID);
}

void MessageHeader_Impl::SetThreadIDDecimalString(const char* text) {
  // As for the process ID.
  const int id = YBase::DecimalToInt(text);
  mThreadIDDecimalText = NotNull(text);
  mThreadIDHexText.clear();
  mThreadID = static_cast<unsigned long>(id);
}

const char* MessageHeader_Impl::GetThreadIDHexString() const {
  return HexText(mThreadIDHexText, static_cast<unsigned>(mThreadID), 1);
}

void MessageHeader_Impl::SetThreadIDHexString(const char* text) {
  SetThreadID(YBase::HexToUnsignedInt(NotNull(text), false));
}

void MessageHeader_Impl::SetTimestamp(const Timestamp& timestamp) {
  mTimestampText.clear();
  DiscardTextForms();
  mTimestamp = timestamp;
}

void MessageHeader_Impl::SetTimestampToNowLocal() {
  mTimestampText.clear();
  DiscardTextForms();
  mTimestamp.SetToNowLocal();
}

const char* MessageHeader_Impl::GetTimestampISO8601String() const {
  if (mTimestampText.empty()) mTimestamp.AppendISO8601String(mTimestampText);
  return mTimestampText.c_str();
}

unsigned MessageHeader_Impl::SetTimestampISO8601String(const char* text) {
  Timestamp_Impl parsed;
  const unsigned count = parsed.FromISO8601String(NotNull(text));
  if (count == 0) return 0;
  mTimestampText.assign(text, count);
  mTimestamp = parsed;
  return count;
}

void MessageHeader_Impl::SetLoggerName(const char* name) {
  mLoggerName = NotNull(name);
}

int MessageHeader_Impl::SetDispatcherName(const char* name) {
  static constexpr std::string_view lErrorDispatcherName = "Error";
  mDispatcherName = NotNull(name);
  const int order = lErrorDispatcherName.compare(mDispatcherName);
  mIsErrorDispatcher = order == 0;
  return order;
}

void MessageHeader_Impl::SetMessageID(unsigned id) {
  if (id == mMessageID) return;
  mMessageIDHexText.clear();
  DiscardTextForms();
  mMessageID = id;
}

const char* MessageHeader_Impl::GetMessageIDHexString() const {
  return HexText(mMessageIDHexText, mMessageID, 8);
}

void MessageHeader_Impl::SetMessageIDHexString(const char* text) {
  SetMessageID(YBase::HexToUnsignedInt(NotNull(text), false));
}

const char* MessageHeader_Impl::ToString() const {
  if (!mTextLine.empty()) return mTextLine.c_str();
  try {
    mTextLine.reserve(TEXT_LINE_CAPACITY);
    AppendOrigin(mTextLine);
    AppendMessageIDAndIDs(mTextLine);
    AppendSourcePosition(mTextLine);
    BlankOutLineBreaks(mTextLine);
  } catch (...) {
    // Half a line would else be taken for a whole one the next time.
    mTextLine.clear();
    throw;
  }
  return mTextLine.c_str();
}

const char* MessageHeader_Impl::ToJsonString() const {
  if (mJsonText.empty()) mJsonText = BuildHeaderJson(*this);
  return mJsonText.c_str();
}

void MessageHeader_Impl::DiscardTextForms() noexcept {
  mTextLine.clear();
  mJsonText.clear();
}

void MessageHeader_Impl::AppendOrigin(std::string& line) const {
  line += GetTimestampISO8601String();
  line += SEPARATOR_TIMESTAMP_HOST;
  line += GetComputerName();
  line += SEPARATOR_HOST_SERVER;
  line += GetServerInstanceName();
  line += SEPARATOR_SERVER_PID;
  line += GetProcessIDDecimalString();
  line += SEPARATOR_PID_THR;
  line += GetThreadIDDecimalString();
  line += SEPARATOR_THR_LOGGER;
  line += GetLoggerName();
  line += SEPARATOR_LOGGER_DISPATCHER;
  line += GetDispatcherName();
  line += DELIMITER_END;
}

void MessageHeader_Impl::AppendMessageIDAndIDs(std::string& line) const {
  if (GetMessageID() != 0) {
    line += DELIMITER_BEFORE_MESSAGE_ID;
    line += GetMessageIDHexString();
    line += DELIMITER_END;
  }
  AppendID(line, DELIMITER_BEFORE_USER_ID, GetUserID());
  AppendID(line, DELIMITER_BEFORE_SESSION_ID, GetSessionID());
  AppendID(line, DELIMITER_BEFORE_OBJECT_ID, GetObjectID());
}

void MessageHeader_Impl::AppendSourcePosition(std::string& line) const {
  if (!mIsErrorDispatcher || *GetFileName() == '\0' || *GetFuncName() == '\0') return;
  line += '[';
  line += YFileSystem::Path::GetBasename(GetFileName());
  line += ':';
  line += GetFuncName();
  line += " at line:";
  AppendInt(line, GetLineNumber());
  line += DELIMITER_END;
}

unsigned MessageHeader_Impl::FromString(const char* line) {
  MessageHeader_Impl parsed;
  const char* const begin = NotNull(line);
  const char* position = begin;
  if (!parsed.ReadTimestamp(position) || !parsed.ReadOrigin(position)) return 0;
  if (!parsed.ReadMessageIDAndIDs(position)) return 0;
  parsed.ReadSourcePosition(position);
  Swap(parsed);
  return static_cast<unsigned>(position - begin);
}

unsigned MessageHeader_Impl::ParseField(const char* text, const char* separator, std::string& field) {
  const char* end = std::strstr(text, separator);
  if (end == nullptr) return 0;
  field.assign(text, end);
  return static_cast<unsigned>(field.size() + std::strlen(separator));
}

bool MessageHeader_Impl::ReadField(const char*& position, const char* separator, std::string& field) {
  const unsigned count = ParseField(position, separator, field);
  position += count;
  return count > 0;
}

bool MessageHeader_Impl::ReadTimestamp(const char*& position) {
  const unsigned count = SetTimestampISO8601String(position);
  position += count;
  return count > 0;
}

bool MessageHeader_Impl::ReadOrigin(const char*& position) {
  std::string field;
  if (!Skip(position, SEPARATOR_TIMESTAMP_HOST)) return false;
  if (!ReadField(position, SEPARATOR_HOST_SERVER, field)) return false;
  SetComputerName(field.c_str());
  if (!ReadField(position, SEPARATOR_SERVER_PID, field)) return false;
  SetServerInstanceName(field.c_str());
  if (!ReadField(position, SEPARATOR_PID_THR, field)) return false;
  SetProcessIDDecimalString(field.c_str());
  if (!ReadField(position, SEPARATOR_THR_LOGGER, field)) return false;
  SetThreadIDDecimalString(field.c_str());
  if (!ReadField(position, SEPARATOR_LOGGER_DISPATCHER, field)) return false;
  SetLoggerName(field.c_str());
  if (!ReadField(position, DELIMITER_END, field)) return false;
  SetDispatcherName(field.c_str());
  return true;
}

bool MessageHeader_Impl::ReadMessageIDAndIDs(const char*& position) {
  struct Group {
    const char* delimiter;
    void (MessageHeader_Impl::*set)(const char*);
  };
  // Each may be missing, but none may stand out of this order.
  static constexpr Group GROUPS[] = {
      {DELIMITER_BEFORE_MESSAGE_ID, &MessageHeader_Impl::SetMessageIDHexString},
      {DELIMITER_BEFORE_USER_ID, &MessageHeader_Impl::SetUserID},
      {DELIMITER_BEFORE_SESSION_ID, &MessageHeader_Impl::SetSessionID},
      {DELIMITER_BEFORE_OBJECT_ID, &MessageHeader_Impl::SetObjectID},
  };
  std::string field;
  for (const auto& [delimiter, set] : GROUPS) {
    if (!Skip(position, delimiter)) continue;
    if (!ReadField(position, DELIMITER_END, field)) return false;
    (this->*set)(field.c_str());
  }
  return true;
}

void MessageHeader_Impl::ReadSourcePosition(const char*& position) {
  SourcePosition source;
  position += source.FromString(position);
  SetFileName(source.fileName.c_str());
  SetFuncName(source.funcName.c_str());
  SetLineNumber(source.lineNumber);
}

void MessageHeader_Impl::Swap(MessageHeader_Impl& other) noexcept {
  mComputerName.swap(other.mComputerName);
  std::swap(mProcessID, other.mProcessID);
  mProcessIDDecimalText.swap(other.mProcessIDDecimalText);
  mProcessIDHexText.swap(other.mProcessIDHexText);
  // The other header is about to go: it gets the low half of the thread ID only.
  const auto lowHalf = static_cast<unsigned>(mThreadID);
  mThreadID = other.mThreadID;
  other.mThreadID = lowHalf;
  mThreadIDDecimalText.swap(other.mThreadIDDecimalText);
  mThreadIDHexText.swap(other.mThreadIDHexText);
  std::swap(mTimestamp, other.mTimestamp);
  mTimestampText.swap(other.mTimestampText);
  mLoggerName.swap(other.mLoggerName);
  mDispatcherName.swap(other.mDispatcherName);
  std::swap(mMessageID, other.mMessageID);
  mMessageIDHexText.swap(other.mMessageIDHexText);
  mTextLine.swap(other.mTextLine);
  mJsonText.swap(other.mJsonText);
  mUserID.swap(other.mUserID);
  mSessionID.swap(other.mSessionID);
  mObjectID.swap(other.mObjectID);
  mFileName.swap(other.mFileName);
  mFuncName.swap(other.mFuncName);
  std::swap(mLineNumber, other.mLineNumber);
}

void MessageHeader_Impl::SetFileName(const char* name) {
  mFileName = OrEmpty(name);
}
void MessageHeader_Impl::SetFuncName(const char* name) {
  mFuncName = OrEmpty(name);
}
void MessageHeader_Impl::SetUserID(const char* id) {
  mUserID = OrEmpty(id);
}
void MessageHeader_Impl::SetSessionID(const char* id) {
  mSessionID = OrEmpty(id);
}
void MessageHeader_Impl::SetObjectID(const char* id) {
  mObjectID = OrEmpty(id);
}

}  // namespace YLog

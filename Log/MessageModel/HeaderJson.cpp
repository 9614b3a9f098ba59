#include "MessageModel/HeaderJson.h"

#include <json/value.h>
#include <json/writer.h>

#include <YBase/TextConversion.h>
#include <YLog/MessageHeader.h>

namespace YLog {

namespace {

constexpr const char* LOG_TIME_STAMP = "time";
constexpr const char* LOG_HOST = "host";
constexpr const char* LOG_SERVER = "server";
constexpr const char* LOG_PID = "pid";
constexpr const char* LOG_THR = "thr";
constexpr const char* LOG_LOGGER = "logger";
constexpr const char* LOG_DISPATCHER = "dispatcher";
constexpr const char* LOG_MESSAGEID = "message_id";
constexpr const char* LOG_UID = "uid";
constexpr const char* LOG_SID = "sid";
constexpr const char* LOG_OID = "oid";
constexpr const char* HEX_PREFIX = "0x";

/// JsonCpp takes the bytes after a broken UTF-8 sequence for a part of it, so valid characters would be lost
/// as well.
std::string ValidUTF8(const char* text) {
  return YBase::WideCharToUTF8(YBase::UTF8ToWideChar(text).c_str());
}

void SetUnlessEmpty(Json::Value& json, const char* key, const char* text) {
  if (*text != '\0') json[key] = ValidUTF8(text);
}

std::string Write(const Json::Value& json) {
  // Its successor does not escape what is not ASCII and writes no line feed at the end, which readers rely
  // on.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  return Json::FastWriter().write(json);
#pragma GCC diagnostic pop
}

}  // namespace

std::string BuildHeaderJson(const MessageHeader& header) {
  Json::Value json;
  json[LOG_TIME_STAMP] = ValidUTF8(header.GetTimestampISO8601String());
  json[LOG_HOST] = ValidUTF8(header.GetComputerName());
  json[LOG_SERVER] = ValidUTF8(header.GetServerInstanceName());
  json[LOG_PID] = ValidUTF8(header.GetProcessIDDecimalString());
  json[LOG_THR] = ValidUTF8(header.GetThreadIDDecimalString());
  json[LOG_LOGGER] = ValidUTF8(header.GetLoggerName());
  json[LOG_DISPATCHER] = ValidUTF8(header.GetDispatcherName());
  if (header.GetMessageID() != 0) {
    json[LOG_MESSAGEID] = std::string(HEX_PREFIX) + header.GetMessageIDHexString();
  }
  SetUnlessEmpty(json, LOG_UID, header.GetUserID());
  SetUnlessEmpty(json, LOG_SID, header.GetSessionID());
  SetUnlessEmpty(json, LOG_OID, header.GetObjectID());
  return Write(json);
}

}  // namespace YLog

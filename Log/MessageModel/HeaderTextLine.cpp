#include "MessageModel/HeaderTextLine.h"

#include <cstddef>
#include <cstring>
#include <string_view>

#include <YBase/NumberText.h>
#include <YFileSystem/Path.h>

#include "MessageModel/MessageHeader_Impl.h"
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

void AppendOrigin(std::string& line, const MessageHeader_Impl& header) {
  line += header.GetTimestampISO8601String();
  line += SEPARATOR_TIMESTAMP_HOST;
  line += header.GetComputerName();
  line += SEPARATOR_HOST_SERVER;
  line += header.GetServerInstanceName();
  line += SEPARATOR_SERVER_PID;
  line += header.GetProcessIDDecimalString();
  line += SEPARATOR_PID_THR;
  line += header.GetThreadIDDecimalString();
  line += SEPARATOR_THR_LOGGER;
  line += header.GetLoggerName();
  line += SEPARATOR_LOGGER_DISPATCHER;
  line += header.GetDispatcherName();
  line += DELIMITER_END;
}

void AppendID(std::string& line, const char* delimiter, const char* id) {
  line += delimiter;
  line += *id != '\0' ? id : "0";
  line += DELIMITER_END;
}

void AppendIDs(std::string& line, const MessageHeader_Impl& header) {
  if (header.GetMessageID() != 0) {
    AppendID(line, DELIMITER_BEFORE_MESSAGE_ID, header.GetMessageIDHexString());
  }
  AppendID(line, DELIMITER_BEFORE_USER_ID, header.GetUserID());
  AppendID(line, DELIMITER_BEFORE_SESSION_ID, header.GetSessionID());
  AppendID(line, DELIMITER_BEFORE_OBJECT_ID, header.GetObjectID());
}

void AppendSourcePosition(std::string& line, const MessageHeader_Impl& header) {
  if (!header.IsErrorDispatcher()) return;
  if (*header.GetFileName() == '\0' || *header.GetFuncName() == '\0') return;
  line += '[';
  line += YFileSystem::Path::GetBasename(header.GetFileName());
  line += ':';
  line += header.GetFuncName();
  line += " at line:";
  line += YBase::ToDecimalString(header.GetLineNumber());
  line += DELIMITER_END;
}

/// Otherwise a name with a line break could forge another record.
void BlankOutLineBreaks(std::string& line, std::size_t begin) noexcept {
  for (const char lineBreak : {'\r', '\n'}) {
    for (std::size_t at = line.find(lineBreak, begin); at != std::string::npos;
         at = line.find(lineBreak, at + 1)) {
      line[at] = ' ';
    }
  }
}

/// Moves past `prefix` if the text at `position` begins with it.
bool Skip(const char*& position, std::string_view prefix) {
  if (std::strncmp(position, prefix.data(), prefix.size()) != 0) return false;
  position += prefix.size();
  return true;
}

/// Reads up to the first `separator` and moves past it. False, and `field` is unchanged, if there is none.
bool ReadField(const char*& position, const char* separator, std::string& field) {
  const char* const end = std::strstr(position, separator);
  if (end == nullptr) return false;
  field.assign(position, end);
  position = end + std::strlen(separator);
  return true;
}

bool ReadTimestamp(const char*& position, MessageHeader_Impl& header) {
  const unsigned count = header.SetTimestampISO8601String(position);
  position += count;
  return count > 0;
}

bool ReadOrigin(const char*& position, MessageHeader_Impl& header) {
  std::string field;
  if (!Skip(position, SEPARATOR_TIMESTAMP_HOST)) return false;
  if (!ReadField(position, SEPARATOR_HOST_SERVER, field)) return false;
  header.SetComputerName(field.c_str());
  if (!ReadField(position, SEPARATOR_SERVER_PID, field)) return false;
  header.SetServerInstanceName(field.c_str());
  if (!ReadField(position, SEPARATOR_PID_THR, field)) return false;
  header.SetProcessIDDecimalString(field.c_str());
  if (!ReadField(position, SEPARATOR_THR_LOGGER, field)) return false;
  header.SetThreadIDDecimalString(field.c_str());
  if (!ReadField(position, SEPARATOR_LOGGER_DISPATCHER, field)) return false;
  header.SetLoggerName(field.c_str());
  if (!ReadField(position, DELIMITER_END, field)) return false;
  header.SetDispatcherName(field.c_str());
  return true;
}

/// Any of them may be missing, but they come in this order.
bool ReadIDs(const char*& position, MessageHeader_Impl& header) {
  struct Group {
    const char* delimiter;
    void (MessageHeader_Impl::*set)(const char*);
  };
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
    (header.*set)(field.c_str());
  }
  return true;
}

void ReadSourcePosition(const char*& position, MessageHeader_Impl& header) {
  SourcePosition source;
  position += source.FromString(position);
  header.SetFileName(source.fileName.c_str());
  header.SetFuncName(source.funcName.c_str());
  header.SetLineNumber(source.lineNumber);
}

}  // namespace

void AppendHeaderTextLine(std::string& line, const MessageHeader_Impl& header) {
  const std::size_t begin = line.size();
  AppendOrigin(line, header);
  AppendIDs(line, header);
  AppendSourcePosition(line, header);
  BlankOutLineBreaks(line, begin);
}

unsigned ReadHeaderTextLine(const char* line, MessageHeader_Impl& header) {
  const char* position = line;
  if (!ReadTimestamp(position, header) || !ReadOrigin(position, header)) return 0;
  if (!ReadIDs(position, header)) return 0;
  ReadSourcePosition(position, header);
  return static_cast<unsigned>(position - line);
}

}  // namespace YLog

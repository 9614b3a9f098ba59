#pragma once

#include <string>
#include <utility>

#include <YLog/MessageHeader.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "MessageModel/HeaderFields.h"

namespace YLog {

/// A header and the text forms built from it so far. An empty text form has to be built again.
///
/// In steady state nothing is allocated: texts are assigned and appended to strings that keep their storage.
class MessageHeader_Impl final : public MessageHeader,
                                 public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  MessageHeader_Impl() = default;
  /// Without a server instance name.
  explicit MessageHeader_Impl(HeaderFields fields) : mFields(std::move(fields)) {}

  const HeaderFields& GetFields() const noexcept { return mFields; }
  /// Whether the text line shows the source position.
  bool IsErrorDispatcher() const noexcept { return mIsErrorDispatcher; }

  const char* GetComputerName() const override { return mFields.computerName.c_str(); }
  void SetComputerName(const char* name) override;

  const char* GetServerInstanceName() const override { return mServerInstanceName.c_str(); }
  void SetServerInstanceName(const char* name) override;

  unsigned GetProcessID() const override { return mFields.processID.Get(); }
  void SetProcessID(unsigned id) override;
  const char* GetProcessIDDecimalString() const override { return mFields.processID.GetDecimalText(); }
  void SetProcessIDDecimalString(const char* text) override;
  const char* GetProcessIDHexString() const override { return mFields.processID.GetHexText(1); }
  void SetProcessIDHexString(const char* text) override;

  unsigned long GetThreadID() const override { return mFields.threadID.Get(); }
  void SetThreadID(unsigned long id) override;
  const char* GetThreadIDDecimalString() const override { return mFields.threadID.GetDecimalText(); }
  void SetThreadIDDecimalString(const char* text) override;
  const char* GetThreadIDHexString() const override { return mFields.threadID.GetHexText(1); }
  void SetThreadIDHexString(const char* text) override;

  const Timestamp& GetTimestamp() const override { return mFields.timestamp; }
  Timestamp& GetTimestamp() override { return mFields.timestamp; }
  void SetTimestamp(const Timestamp& timestamp) override;
  void SetTimestampToNowLocal() override;
  const char* GetTimestampISO8601String() const override;
  unsigned SetTimestampISO8601String(const char* text) override;

  const char* GetLoggerName() const override { return mFields.loggerName.c_str(); }
  void SetLoggerName(const char* name) override;

  const char* GetDispatcherName() const override { return mFields.dispatcherName.c_str(); }
  int SetDispatcherName(const char* name) override;

  unsigned GetMessageID() const override { return mFields.messageID.Get(); }
  void SetMessageID(unsigned id) override;
  const char* GetMessageIDHexString() const override { return mFields.messageID.GetHexText(8); }
  void SetMessageIDHexString(const char* text) override;

  const char* ToString() const override;
  const char* ToJsonString() const override;
  unsigned FromString(const char* line) override;

  void SetFileName(const char* name) override;
  const char* GetFileName() const override { return mFields.fileName.c_str(); }
  void SetFuncName(const char* name) override;
  const char* GetFuncName() const override { return mFields.funcName.c_str(); }
  void SetLineNumber(int line) override { mFields.lineNumber = line; }
  int GetLineNumber() const override { return mFields.lineNumber; }

  void SetUserID(const char* id) override;
  const char* GetUserID() const override { return mFields.userID.c_str(); }
  void SetSessionID(const char* id) override;
  const char* GetSessionID() const override { return mFields.sessionID.c_str(); }
  void SetObjectID(const char* id) override;
  const char* GetObjectID() const override { return mFields.objectID.c_str(); }

 private:
  ~MessageHeader_Impl() override = default;

  void DiscardTextForms() const noexcept;

  HeaderFields mFields;
  std::string mServerInstanceName;
  bool mIsErrorDispatcher = false;
  mutable std::string mTextLine;
  mutable std::string mJsonText;
};

}  // namespace YLog

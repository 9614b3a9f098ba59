#pragma once

#include <string>

#include <YLog/MessageHeader.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "MessageModel/Timestamp_Impl.h"

namespace YLog {

/// A header and the text forms built from it so far. An empty text form has to be built again.
///
/// In steady state nothing is allocated: texts are assigned and appended to strings that keep their storage.
class MessageHeader_Impl final : public MessageHeader,
                                 public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  MessageHeader_Impl() = default;

  const char* GetComputerName() const override { return mComputerName.c_str(); }
  void SetComputerName(const char* name) override;

  const char* GetServerInstanceName() const override { return mServerInstanceName.c_str(); }
  void SetServerInstanceName(const char* name) override;

  unsigned GetProcessID() const override { return mProcessID; }
  void SetProcessID(unsigned id) override;
  const char* GetProcessIDDecimalString() const override;
  void SetProcessIDDecimalString(const char* text) override;
  const char* GetProcessIDHexString() const override;
  void SetProcessIDHexString(const char* text) override;

  unsigned long GetThreadID() const override { return mThreadID; }
  void SetThreadID(unsigned long id) override;
  const char* GetThreadIDDecimalString() const override;
  void SetThreadIDDecimalString(const char* text) override;
  const char* GetThreadIDHexString() const override;
  void SetThreadIDHexString(const char* text) override;

  const Timestamp& GetTimestamp() const override { return mTimestamp; }
  Timestamp& GetTimestamp() override { return mTimestamp; }
  void SetTimestamp(const Timestamp& timestamp) override;
  void SetTimestampToNowLocal() override;
  const char* GetTimestampISO8601String() const override;
  unsigned SetTimestampISO8601String(const char* text) override;

  const char* GetLoggerName() const override { return mLoggerName.c_str(); }
  void SetLoggerName(const char* name) override;

  const char* GetDispatcherName() const override { return mDispatcherName.c_str(); }
  int SetDispatcherName(const char* name) override;

  unsigned GetMessageID() const override { return mMessageID; }
  void SetMessageID(unsigned id) override;
  const char* GetMessageIDHexString() const override;
  void SetMessageIDHexString(const char* text) override;

  const char* ToString() const override;
  const char* ToJsonString() const override;
  unsigned FromString(const char* line) override;

  void SetFileName(const char* name) override;
  const char* GetFileName() const override { return mFileName.c_str(); }
  void SetFuncName(const char* name) override;
  const char* GetFuncName() const override { return mFuncName.c_str(); }
  void SetLineNumber(int line) override { mLineNumber = line; }
  int GetLineNumber() const override { return mLineNumber; }

  void SetUserID(const char* id) override;
  const char* GetUserID() const override { return mUserID.c_str(); }
  void SetSessionID(const char* id) override;
  const char* GetSessionID() const override { return mSessionID.c_str(); }
  void SetObjectID(const char* id) override;
  const char* GetObjectID() const override { return mObjectID.c_str(); }

 private:
  ~MessageHeader_Impl() override = default;

  void DiscardTextForms() noexcept;

  void AppendOrigin(std::string& line) const;
  void AppendMessageIDAndIDs(std::string& line) const;
  void AppendSourcePosition(std::string& line) const;

  /// Reads up to the first `separator` and returns the offset behind it; 0, and `field` unchanged, where
  /// there is none.
  static unsigned ParseField(const char* text, const char* separator, std::string& field);
  static bool ReadField(const char*& position, const char* separator, std::string& field);

  // Each reads its part of a text line into this header and moves `position` behind it; false where that
  // part is not as it must be.
  bool ReadTimestamp(const char*& position);
  bool ReadOrigin(const char*& position);
  bool ReadMessageIDAndIDs(const char*& position);
  void ReadSourcePosition(const char*& position);

  /// Exchanges all that a text line tells of a message. The server instance name and whether the source
  /// position is shown stay with their object.
  void Swap(MessageHeader_Impl& other) noexcept;

  std::string mComputerName;
  std::string mServerInstanceName;
  unsigned mProcessID = 0;
  mutable std::string mProcessIDDecimalText;
  mutable std::string mProcessIDHexText;
  unsigned long mThreadID = 0;
  mutable std::string mThreadIDDecimalText;
  mutable std::string mThreadIDHexText;
  Timestamp_Impl mTimestamp;
  mutable std::string mTimestampText;
  std::string mLoggerName;
  std::string mDispatcherName;
  unsigned mMessageID = 0;
  mutable std::string mMessageIDHexText;
  mutable std::string mTextLine;
  mutable std::string mJsonText;
  std::string mFileName;
  std::string mFuncName;
  int mLineNumber = 0;
  std::string mUserID;
  std::string mSessionID;
  std::string mObjectID;
  bool mIsErrorDispatcher = false;
};

}  // namespace YLog

#pragma once

#include <YBase/ReferenceCounted.h>
#include <YBase/SmartPtrI.h>
#include <YLog/Export.h>
#include <YLog/Timestamp.h>

namespace YLog {

/// Where and when a message was logged: time, computer, server instance, process, thread, logger, dispatcher,
/// message ID, the user, session and object that it concerns, and the source position.
///
/// The texts of the numbers and of the header itself are built at the first request and kept. Only the
/// setters of numbers and of the timestamp discard the text line and the JSON form. The setters of names, of
/// the source position and of the user, session and object IDs do not: if one of the two forms has been
/// built, it stays as it is.
///
/// Texts are UTF-8. Getters of texts never return null; what they return stays valid until the next setter is
/// called on the same header.
///
/// Ownership: counted. Setters copy their arguments. A text must not be null unless the setter says
/// otherwise: debug builds refuse null, others treat it as an empty text.
///
/// Threads: a header belongs to one thread at a time; only its count is atomic.
///
/// Failure: setters and text forms throw `std::bad_alloc`; parsers report failure by returning 0.
class YLOG_EXPORT MessageHeader : public virtual YBase::ReferenceCounted {
 public:
  virtual const char* GetComputerName() const = 0;
  virtual void SetComputerName(const char* name) = 0;

  virtual const char* GetServerInstanceName() const = 0;
  /// Null is the empty text.
  virtual void SetServerInstanceName(const char* name) = 0;

  virtual unsigned GetProcessID() const = 0;
  /// Setting the present value changes nothing.
  virtual void SetProcessID(unsigned id) = 0;
  virtual const char* GetProcessIDDecimalString() const = 0;
  /// Sets the number that `YBase::DecimalToInt` reads from `text`, and keeps `text` as the number's decimal
  /// text, whatever it contains. The text line and the JSON form are not discarded.
  virtual void SetProcessIDDecimalString(const char* text) = 0;
  /// Upper-case hexadecimal digits, without padding or prefix.
  virtual const char* GetProcessIDHexString() const = 0;
  virtual void SetProcessIDHexString(const char* text) = 0;

  virtual unsigned long GetThreadID() const = 0;
  /// Setting the present value changes nothing.
  virtual void SetThreadID(unsigned long id) = 0;
  virtual const char* GetThreadIDDecimalString() const = 0;
  /// As `SetProcessIDDecimalString`; a negative number is sign-extended.
  virtual void SetThreadIDDecimalString(const char* text) = 0;
  /// The low 32 bits only, in upper-case hexadecimal digits, without padding or prefix.
  virtual const char* GetThreadIDHexString() const = 0;
  virtual void SetThreadIDHexString(const char* text) = 0;

  virtual const Timestamp& GetTimestamp() const = 0;
  /// A change made through this reference does not discard the texts that have been built.
  virtual Timestamp& GetTimestamp() = 0;
  virtual void SetTimestamp(const Timestamp& timestamp) = 0;
  virtual void SetTimestampToNowLocal() = 0;
  virtual const char* GetTimestampISO8601String() const = 0;
  /// Reads a timestamp at the beginning of `text` and returns the number of characters read. Those characters
  /// become the timestamp's text as they are; the text line and the JSON form are not discarded. If there is
  /// no timestamp, returns 0 and leaves the header unchanged.
  virtual unsigned SetTimestampISO8601String(const char* text) = 0;

  virtual const char* GetLoggerName() const = 0;
  virtual void SetLoggerName(const char* name) = 0;

  virtual const char* GetDispatcherName() const = 0;
  /// Sets the name and returns how "Error" compares with it: 0 if the two are equal, otherwise a number with
  /// the sign of the comparison. The text line shows the source position only if they are equal.
  virtual int SetDispatcherName(const char* name) = 0;

  /// 0 if the message has no ID.
  virtual unsigned GetMessageID() const = 0;
  /// Setting the present value changes nothing.
  virtual void SetMessageID(unsigned id) = 0;
  /// Eight upper-case hexadecimal digits.
  virtual const char* GetMessageIDHexString() const = 0;
  virtual void SetMessageIDHexString(const char* text) = 0;

  /// The header as one line without a line feed, as at the beginning of every record:
  /// `2024-03-05 09:07:03.042+01:00 [HOST:web01][SERVER:Inst1][PID:4711][THR:123145][Kernel][Error]`
  /// `[0x0000012C][UID:0][SID:0][OID:0][engine_main:Run at line:42]`
  /// The group of the message ID is left out if the ID is 0. The last group is there only on the dispatcher
  /// "Error", if both file and function are known; it shows the file without its folders.
  virtual const char* ToString() const = 0;
  /// The header as one JSON object on one line that ends in a line feed, all in ASCII:
  /// `{"dispatcher":"Error","host":"web01","logger":"Kernel","message_id":"0x0000012C","pid":"4711",`
  /// `"server":"Inst1","thr":"123145","time":"2024-03-05 09:07:03.042+01:00","uid":"U1"}`
  /// All values are strings. "message_id" is left out if the ID is 0, and "uid", "sid" and "oid" if the user,
  /// session or object ID is empty. Invalid UTF-8 is replaced as `YBase::UTF8ToWideChar` does. The source
  /// position is not included.
  virtual const char* ToJsonString() const = 0;
  /// Reads a text line back and returns the number of characters of `line` that belong to the header; the
  /// message follows them. If `line` does not begin with a header, returns 0 and leaves the header unchanged.
  ///
  /// This header keeps its server instance name, and its text line shows the source position or not, as
  /// before. IDs shown as "0" are read as the text "0".
  virtual unsigned FromString(const char* line) = 0;

  /// Null is the empty text, here and in the setters below.
  virtual void SetFileName(const char* name) = 0;
  virtual const char* GetFileName() const = 0;
  virtual void SetFuncName(const char* name) = 0;
  virtual const char* GetFuncName() const = 0;
  virtual void SetLineNumber(int line) = 0;
  virtual int GetLineNumber() const = 0;

  virtual void SetUserID(const char* id) = 0;
  virtual const char* GetUserID() const = 0;
  virtual void SetSessionID(const char* id) = 0;
  virtual const char* GetSessionID() const = 0;
  virtual void SetObjectID(const char* id) = 0;
  virtual const char* GetObjectID() const = 0;

 protected:
  ~MessageHeader() override;
};

/// A new header with every text empty and every number 0.
///
/// Failure: `std::bad_alloc`.
YLOG_EXPORT YBase::SmartPtrI<MessageHeader> CreateMessageHeader();

}  // namespace YLog

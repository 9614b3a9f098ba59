#pragma once

#include <YBase/ReferenceCounted.h>
#include <YBase/ReturnString.h>
#include <YLog/Export.h>

namespace YLog {

class MessageBody;
class MessageHeader;

/// Where finished records go: a file, standard error. Clients may implement their own.
///
/// Ownership: a dispatcher holds a reference from `Dispatcher::SetDestinations` until the list has been
/// replaced and the last message that uses it has been delivered.
///
/// Threads: any operation may be called from any thread, and from several at once.
///
/// Reentrancy: called with no lock of the library held; it may log. A message that it logs has its own
/// header.
///
/// Failure: what `LogMessage` throws reaches the caller of the logging function, and the destinations after
/// this one receive nothing.
///
/// The header may differ from the message's own if a disk file earlier in the list has just reported missed
/// messages: see `Destination_DiskFile`.
class YLOG_EXPORT Destination : public virtual YBase::ReferenceCounted {
 public:
  /// Logs a text. Text and header are valid only during the call. \pre `text` is not null.
  virtual void LogMessage(const char* text, const MessageHeader& header) const = 0;

  /// Logs a structured message. The library's destinations take its text in their language, `GetLanguageID`,
  /// and log it like any other text. Header and body are valid only during the call.
  virtual void LogMessage(const MessageHeader& header, const MessageBody& body) const = 0;

  /// Sets the IDs of the messages whose records show the call stack. They are copied and replace the previous
  /// ones; a count of 0 removes those. A message without an ID (0) never shows a call stack.
  ///
  /// \pre `ids` points to `count` IDs; it may be null if `count` is 0.
  virtual void SetCallstackMessageIDs(const unsigned* ids, unsigned count) = 0;

  /// The language in which this destination shows structured messages: 0, the neutral one, until it is set.
  /// Messages by ID have become texts before they arrive here, in the language of the process.
  virtual unsigned short GetLanguageID() const = 0;
  virtual void SetLanguageID(unsigned short language) = 0;

 protected:
  ~Destination() override;
};

/// Returns the text of a record, without a line feed at its end: the header's text line, one blank and the
/// first line of the message; then each further line of the message on a line of its own. Any run of line
/// feeds and carriage returns is one line break, and those at either end of a text are dropped.
///
/// If there is no message text, the record is the header and one blank; if it consists of line breaks only,
/// the record is empty. Both texts may be null. `messageID` is not used.
YLOG_EXPORT YBase::ReturnString FormatMultiLineMessageText(unsigned messageID, const char* headerText,
                                                           const char* messageText);

}  // namespace YLog

#pragma once

#include <YBase/ReferenceCounted.h>
#include <YBase/ReturnString.h>
#include <YLog/Export.h>

namespace YLog {

class MessageBody;
class MessageHeader;

/// Where finished records go: a file, standard error. Clients may bring their own.
///
/// Ownership: a dispatcher holds a reference from `Dispatcher::SetDestinations` until the last message under
/// way at the next `SetDestinations` has been delivered.
///
/// Threads: any operation may arrive from any thread, several at once.
///
/// Reentrancy: called with no lock of the library held; it may log. What it logs has a header of its own.
///
/// Failure: what `LogMessage` throws reaches the caller of the logging function, and the destinations after
/// this one receive nothing.
///
/// The header may differ from the message's own if a disk file earlier in the list has just reported missed
/// messages: see `Destination_DiskFile`.
class YLOG_EXPORT Destination : public virtual YBase::ReferenceCounted {
 public:
  /// \pre `text` is not null. Text and header are valid during the call only.
  virtual void LogMessage(const char* text, const MessageHeader& header) const = 0;

  /// A structured message. The library's destinations take its text in their language, `GetLanguageID`, and
  /// go on as with a ready one. Header and body are valid during the call only.
  virtual void LogMessage(const MessageHeader& header, const MessageBody& body) const = 0;

  /// The messages, by ID, whose records show the call stack: these instead of those given before. They are
  /// copied; none takes all away. A message without an ID, 0, never shows one.
  ///
  /// \pre `ids` points to `count` IDs, and may be null where there are none.
  virtual void SetCallstackMessageIDs(const unsigned* ids, unsigned count) = 0;

  /// The language in which this destination shows structured messages; 0, the neutral one, until it is set.
  /// Messages by ID are texts already when they get here, in the language of the process.
  virtual unsigned short GetLanguageID() const = 0;
  virtual void SetLanguageID(unsigned short language) = 0;

 protected:
  ~Destination() override;
};

/// Lays out the text of a record, without a line end behind it: the header's text line, one blank and the
/// first line of the message; then each further line of the message on a line of its own. Any run of line
/// feeds and carriage returns is one line break, and those at either end of a text are dropped.
///
/// Without a message text the record is the header and one blank; with one of line breaks only it is empty.
/// Both texts may be null. `messageID` is not used.
YLOG_EXPORT YBase::ReturnString FormatMultiLineMessageText(unsigned messageID, const char* headerText,
                                                           const char* messageText);

}  // namespace YLog

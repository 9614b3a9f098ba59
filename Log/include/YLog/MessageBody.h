#pragma once

#include <YBase/Message.h>
#include <YBase/ReferenceCounted.h>
#include <YBase/SmartPtrI.h>
#include <YLog/Export.h>

namespace YLog {

/// The text of a structured message, in any language. It is composed at the first request for that language,
/// and kept. Texts that the message does not contain come from the catalogues that are registered with the
/// resource library.
///
/// Ownership: counted. Owns a copy of its message.
///
/// Threads: a body belongs to one thread at a time; only its count is atomic.
///
/// Failure: `std::bad_alloc`, and what a client's bundle throws. The next request tries again.
class YLOG_EXPORT MessageBody : public virtual YBase::ReferenceCounted {
 public:
  /// Replaces the message, and discards all texts of the previous one.
  virtual void SetMessage(const YBase::Message& message) = 0;

  /// The message, with the texts that were found for it in every language requested so far. Valid until the
  /// next `SetMessage`.
  virtual const YBase::Message& GetMessage() = 0;

  /// The text of the whole message in a language, in UTF-8: a line for each message of the tree, indented by
  /// its depth. Never null. Valid until the next `SetMessage`.
  virtual const char* GetText(unsigned short language) const = 0;

 protected:
  ~MessageBody() override;
};

/// A new body with an empty message.
///
/// Failure: `std::bad_alloc`.
YLOG_EXPORT YBase::SmartPtrI<MessageBody> CreateMessageBody();

}  // namespace YLog

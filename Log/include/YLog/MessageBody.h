#pragma once

#include <YBase/Message.h>
#include <YBase/ReferenceCounted.h>
#include <YBase/SmartPtrI.h>
#include <YLog/Export.h>

namespace YLog {

/// What a structured message says, as text in any language: composed when it is first asked for, and kept.
/// Texts that the message does not carry come from the catalogues that are registered with the resource
/// library.
///
/// Ownership: counted. Owns a copy of the message that it is given.
///
/// Threads: a body belongs to one thread at a time; only its count is atomic.
///
/// Failure: `std::bad_alloc`, and what the bundle of a client throws. What failed is tried anew when it is
/// asked for again.
class YLOG_EXPORT MessageBody : public virtual YBase::ReferenceCounted {
 public:
  /// Starts a new message; all texts of the one before go.
  virtual void SetMessage(const YBase::Message& message) = 0;

  /// The message, with the texts that were found for it in every language asked for so far. Valid until the
  /// next `SetMessage`.
  virtual const YBase::Message& GetMessage() = 0;

  /// The text of the whole message in a language, UTF-8, a line for each message of the tree, indented by its
  /// depth. Never null. Valid until the next `SetMessage`.
  virtual const char* GetText(unsigned short language) const = 0;

 protected:
  ~MessageBody() override;
};

/// A new body with an empty message.
///
/// Failure: `std::bad_alloc`.
YLOG_EXPORT YBase::SmartPtrI<MessageBody> CreateMessageBody();

}  // namespace YLog

#pragma once

#include <string>

#include <YBase/Message.h>
#include <YBase/ReferenceCounted.h>
#include <YBase/SmartPtrI.h>
#include <YDataType/ObjectCollection.h>
#include <YLog/Destination.h>
#include <YLog/Export.h>

namespace YLog {

class Logger;

/// A named fan-out point: stamps each message with its header and hands it to a list of destinations.
///
/// Ownership: counted. Holds its destinations and callbacks.
///
/// Threads: any operation from any thread. A message goes to the list before or after a `SetDestinations`
/// as a whole, never to a mixture.
///
/// Reentrancy: destinations and callbacks are called with no lock held. A message logged by one of them, on
/// the same thread, has a header of its own; the outer message stays as it is.
///
/// Failure: what a destination or a callback throws goes to the caller at once.
class YLOG_EXPORT Dispatcher : public virtual YBase::ReferenceCounted {
 public:
  class Callback;

  virtual const char* GetName() const = 0;

  /// Whether it has at least one destination.
  virtual bool IsEnabled() const = 0;

  /// Hands a text to each destination in turn. Without a destination nothing happens. File and function may
  /// be null. \pre `text` is not null.
  virtual void LogMessage(const Logger& logger, const char* text, unsigned messageID, const char* fileName,
                          const char* funcName, int lineNumber) const = 0;

  /// Hands a structured message to each destination in turn, each of which shows it in its own language. Its
  /// ID becomes that of the record; there is no source position. Without a destination nothing happens.
  virtual void LogMessage(const Logger& logger, const YBase::Message& message) const = 0;
  /// The same, and leaves in `message` the texts that were found for the languages of the destinations. When
  /// this fails the message stays as it was.
  virtual void LogMessage(const Logger& logger, YBase::Message& message) const = 0;

  /// Replaces the list of destinations, then tells every callback. The new list is in force even when a
  /// callback throws; those after it are then not told. Null entries are kept and skipped.
  virtual void SetDestinations(const YDataType::ObjectCollection<Destination>& destinations) = 0;

  /// A callback that is already registered is not added twice. Callbacks are told in the order of their
  /// addresses. Null is kept and skipped.
  virtual void RegisterCallback(Callback* callback) = 0;
  /// One that is not registered is ignored.
  virtual void UnregisterCallback(const Callback* callback) noexcept = 0;

  /// Fills the calling thread's header as for a message and gives its JSON form, instead of logging: see
  /// `MessageHeader::ToJsonString`. It does so without a destination, too. The text is not used and may be
  /// null.
  virtual void GetMessageTextJSON(const Logger& logger, const char* text, unsigned messageID,
                                  const char* fileName, const char* funcName, int lineNumber,
                                  std::string& out) const = 0;

 protected:
  ~Dispatcher() override;
};

/// Hears when the destinations of a dispatcher were replaced.
class YLOG_EXPORT Dispatcher::Callback : public virtual YBase::ReferenceCounted {
 public:
  /// Called with no lock held, by the thread that replaced them.
  virtual void DispatcherChanged(Dispatcher& dispatcher) = 0;

 protected:
  ~Callback() override;
};

/// A new dispatcher without destinations. The name is copied and must not be null.
///
/// Failure: `std::bad_alloc`.
YLOG_EXPORT YBase::SmartPtrI<Dispatcher> CreateDispatcher(const char* name);

}  // namespace YLog

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

/// A named fan-out point: gives each message its header and passes it to a list of destinations.
///
/// Ownership: counted. Holds its destinations and callbacks.
///
/// Threads: any thread may call any operation. If `SetDestinations` replaces the list meanwhile, a message is
/// delivered to the whole old list or to the whole new one, never to a mixture.
///
/// Reentrancy: destinations and callbacks are called with no lock held. A message that one of them logs on
/// the same thread has its own header; the outer message stays as it is.
///
/// Failure: what a destination or a callback throws reaches the caller at once.
class YLOG_EXPORT Dispatcher : public virtual YBase::ReferenceCounted {
 public:
  class Callback;

  virtual const char* GetName() const = 0;

  /// Whether it has at least one destination.
  virtual bool IsEnabled() const = 0;

  /// Passes a text to each destination in turn. Without a destination nothing happens. File and function may
  /// be null.
  /// \pre `text` is not null.
  virtual void LogMessage(const Logger& logger, const char* text, unsigned messageID, const char* fileName,
                          const char* funcName, int lineNumber) const = 0;

  /// Passes a structured message to each destination in turn, and each shows it in its own language. The
  /// record has the message's ID and no source position. Without a destination nothing happens.
  virtual void LogMessage(const Logger& logger, const YBase::Message& message) const = 0;
  /// The same, and stores in `message` the texts that were found for the languages of the destinations. If
  /// this fails, the message stays as it was.
  virtual void LogMessage(const Logger& logger, YBase::Message& message) const = 0;

  /// Replaces the list of destinations, then calls every callback. If a callback throws, the new list is used
  /// nevertheless, but the callbacks after it are not called. Null entries are kept and skipped.
  virtual void SetDestinations(const YDataType::ObjectCollection<Destination>& destinations) = 0;

  /// Adds a callback unless it is already registered. Callbacks are called in the order of their addresses.
  /// Null is kept and skipped.
  virtual void RegisterCallback(Callback* callback) = 0;
  /// A callback that is not registered is ignored.
  virtual void UnregisterCallback(const Callback* callback) noexcept = 0;

  /// Fills in the calling thread's header as for a message, but logs nothing: `out` becomes the header's JSON
  /// form, as `MessageHeader::ToJsonString` describes it. A destination is not needed. The text is not used
  /// and may be null.
  virtual void GetMessageTextJSON(const Logger& logger, const char* text, unsigned messageID,
                                  const char* fileName, const char* funcName, int lineNumber,
                                  std::string& out) const = 0;

 protected:
  ~Dispatcher() override;
};

/// Is called when the destinations of a dispatcher have been replaced.
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

#pragma once

#include <vector>

#include <YBase/SmartPtrI.h>
#include <YDataType/ObjectCollection.h>
#include <YLog/Destination.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace YLog {

/// The destinations of a dispatcher as they were at one moment. A message takes a reference to the whole list
/// instead of a copy, and so goes to all of it, whatever is set meanwhile.
///
/// Never changes after construction. Threads: any.
class DestinationList final : public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit DestinationList(const YDataType::ObjectCollection<Destination>& destinations);

  /// Hands a message to each destination, front to back. What one throws ends it there.
  void LogMessage(const char* text, const MessageHeader& header) const;
  void LogMessage(const MessageHeader& header, const MessageBody& body) const;

 private:
  /// Releases the destinations back to front.
  ~DestinationList() override;

  std::vector<YBase::SmartPtrI<Destination>> mDestinations;
};

}  // namespace YLog

#pragma once

#include <vector>

#include <YBase/SmartPtrI.h>
#include <YDataType/ObjectCollection.h>
#include <YLog/Destination.h>
#include <YSynch/AtomicLong.h>
#include <YSynch/ReferenceCountedImpl.h>

namespace YLog {

/// The destinations of a dispatcher as they were at one moment. A message holds a reference to the whole list
/// instead of a copy, so it reaches all of these destinations even if others are set in the meantime.
///
/// Never changes after construction. Threads: any.
class DestinationList final : public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  explicit DestinationList(const YDataType::ObjectCollection<Destination>& destinations);

  /// Passes a message to each destination, front to back. If one throws, those after it receive nothing.
  void LogMessage(const char* text, const MessageHeader& header) const;
  void LogMessage(const MessageHeader& header, const MessageBody& body) const;

 private:
  /// Releases the destinations back to front.
  ~DestinationList() override;

  std::vector<YBase::SmartPtrI<Destination>> mDestinations;
};

}  // namespace YLog

#include "Core/DestinationList.h"

namespace YLog {

DestinationList::DestinationList(const YDataType::ObjectCollection<Destination>& destinations) {
  mDestinations.reserve(destinations.GetCount());
  for (unsigned index = 0; index < destinations.GetCount(); ++index) {
    mDestinations.push_back(destinations.GetItem(index));
  }
}

DestinationList::~DestinationList() {
  while (!mDestinations.empty()) mDestinations.pop_back();
}

void DestinationList::LogMessage(const char* text, const MessageHeader& header) const {
  for (const auto& destination : mDestinations) {
    if (destination) destination->LogMessage(text, header);
  }
}

void DestinationList::LogMessage(const MessageHeader& header, const MessageBody& body) const {
  for (const auto& destination : mDestinations) {
    if (destination) destination->LogMessage(header, body);
  }
}

}  // namespace YLog

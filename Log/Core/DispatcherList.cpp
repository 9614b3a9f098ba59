#include "Core/DispatcherList.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>

namespace YLog {

DispatcherList::~DispatcherList() {
  while (!mPlaces.empty()) mPlaces.pop_back();
}

YBase::SmartPtrI<Dispatcher> DispatcherList::Get(std::size_t index) const {
  return index < mPlaces.size() ? mPlaces[index].mpDispatcher : nullptr;
}

bool DispatcherList::Contains(const Dispatcher& dispatcher) const noexcept {
  return std::any_of(mPlaces.begin(), mPlaces.end(),
                     [&](const Place& place) { return place.mpDispatcher.Get() == &dispatcher; });
}

std::size_t DispatcherList::FindName(const char* name) const {
  const auto position = std::find_if(mPlaces.begin(), mPlaces.end(), [&](const Place& place) {
    return std::strcmp(place.mpDispatcher->GetName(), name) == 0;
  });
  return static_cast<std::size_t>(position - mPlaces.begin());
}

bool DispatcherList::IsConfigured(std::size_t index) const noexcept {
  return index < mPlaces.size() && mPlaces[index].mbConfigured;
}

std::size_t DispatcherList::Add(YBase::SmartPtrI<Dispatcher> dispatcher) {
  if (mPlaces.size() == MAX_COUNT) {
    throw YBase::ExceptionImpl<YBase::Message>(
        "YLog::DispatcherList::Add: a logger cannot have more than 65536 dispatchers");
  }
  mPlaces.push_back({std::move(dispatcher)});
  return mPlaces.size() - 1;
}

YBase::SmartPtrI<Dispatcher> DispatcherList::Replace(std::size_t index,
                                                     YBase::SmartPtrI<Dispatcher> dispatcher) noexcept {
  assert(index < mPlaces.size());
  std::swap(mPlaces[index].mpDispatcher, dispatcher);
  return dispatcher;
}

void DispatcherList::SetConfigured(std::size_t index, bool configured) noexcept {
  assert(index < mPlaces.size());
  mPlaces[index].mbConfigured = configured;
}

}  // namespace YLog

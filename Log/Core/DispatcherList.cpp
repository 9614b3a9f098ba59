#include "Core/DispatcherList.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>

namespace YLog {

DispatcherList::~DispatcherList() {
  while (!mDispatchers.empty()) mDispatchers.pop_back();
}

YBase::SmartPtrI<Dispatcher> DispatcherList::Get(std::size_t index) const {
  return index < mDispatchers.size() ? mDispatchers[index] : nullptr;
}

bool DispatcherList::Contains(const Dispatcher& dispatcher) const noexcept {
  return std::any_of(mDispatchers.begin(), mDispatchers.end(),
                     [&](const auto& candidate) { return candidate.Get() == &dispatcher; });
}

std::size_t DispatcherList::FindName(const char* name) const {
  const auto position = std::find_if(mDispatchers.begin(), mDispatchers.end(), [&](const auto& dispatcher) {
    return std::strcmp(dispatcher->GetName(), name) == 0;
  });
  return static_cast<std::size_t>(position - mDispatchers.begin());
}

std::size_t DispatcherList::Add(YBase::SmartPtrI<Dispatcher> dispatcher) {
  if (mDispatchers.size() == MAX_COUNT) {
    throw YBase::ExceptionImpl<YBase::Message>(
        "YLog::DispatcherList::Add: a logger cannot have more than 65536 dispatchers");
  }
  mDispatchers.push_back(std::move(dispatcher));
  return mDispatchers.size() - 1;
}

YBase::SmartPtrI<Dispatcher> DispatcherList::Replace(std::size_t index,
                                                     YBase::SmartPtrI<Dispatcher> dispatcher) noexcept {
  assert(index < mDispatchers.size());
  std::swap(mDispatchers[index], dispatcher);
  return dispatcher;
}

}  // namespace YLog

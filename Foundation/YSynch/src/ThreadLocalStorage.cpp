#include <YSynch/ThreadLocalStorage.h>

#include <utility>

#include "ThreadTables.h"

namespace YSynch {

ThreadContext::~ThreadContext() = default;

ThreadLocalStorage::ThreadLocalStorage() : mSlot(ThreadTables::Get().TakeSlot()) {}

ThreadLocalStorage::~ThreadLocalStorage() {
  // One at a time: a destructor must not need memory, and contexts are disposed of with no lock held.
  while (ThreadContext* context = ThreadTables::Get().TakeValue(mSlot)) context->Delete();
  ThreadTables::Get().GiveSlotBack(mSlot);
}

ThreadContext* ThreadLocalStorage::GetValue() const noexcept {
  return ThreadTables::GetValue(mSlot);
}

// NOLINTNEXTLINE(readability-make-member-function-const): the value changes, although in the thread's table.
void ThreadLocalStorage::SetValue(ThreadContext* context) {
  if (context == GetValue()) return;
  ThreadContext* previous = std::exchange(ThreadTables::Get().GetPlace(mSlot), context);
  if (previous != nullptr) previous->Delete();
}

YBase::StrongPtr<ThreadLocalStorage> CreateThreadLocalStorage() {
  return std::make_unique<ThreadLocalStorage>();
}

}  // namespace YSynch

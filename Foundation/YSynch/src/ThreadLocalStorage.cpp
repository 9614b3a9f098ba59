#include <YSynch/ThreadLocalStorage.h>

#include <array>
#include <utility>

#include "ThreadTables.h"

namespace YSynch {
namespace {

void Dispose(ThreadContext& context) noexcept {
  context.Delete();
}

class Storage final : public ThreadLocalStorage {
 public:
  Storage() : mSlot(ThreadTables::Get().TakeSlot()) {}
  ~Storage() override;

  ThreadContext* GetValue() const noexcept override { return ThreadTables::GetValue(mSlot); }
  void SetValue(ThreadContext* context) override;

 private:
  const std::size_t mSlot;
};

Storage::~Storage() {
  // In portions of a fixed size: a destructor must not need memory, and contexts are disposed of with no
  // lock held.
  std::array<ThreadContext*, 64> contexts;
  while (const std::size_t count = ThreadTables::Get().TakeValues(mSlot, contexts)) {
    for (std::size_t i = 0; i != count; ++i) Dispose(*contexts[i]);
  }
  ThreadTables::Get().GiveSlotBack(mSlot);
}

void Storage::SetValue(ThreadContext* context) {
  if (context == GetValue()) return;
  ThreadContext* previous = std::exchange(ThreadTables::Get().GetPlace(mSlot), context);
  if (previous != nullptr) Dispose(*previous);
}

}  // namespace

ThreadContext::~ThreadContext() = default;

ThreadLocalStorage::~ThreadLocalStorage() = default;

YBase::StrongPtr<ThreadLocalStorage> CreateThreadLocalStorage() {
  return std::make_unique<Storage>();
}

}  // namespace YSynch

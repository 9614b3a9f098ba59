#include "ThreadTables.h"

#include <YBase/NeverDestroyed.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <string>
#include <system_error>
#include <utility>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>

#include "IntrusiveList.h"

namespace YSynch {
namespace {

constinit YBase::NeverDestroyed<ThreadTables> gsThreadTables;

}  // namespace

constinit thread_local ThreadTables::Table* ThreadTables::spOwn = nullptr;

ThreadTables& ThreadTables::Get() noexcept {
  return *gsThreadTables;
}

void ThreadTables::CreateKey() {
  static constexpr const char* FUNCTION_NAME = "YSynch::CreateThreadLocalStorage";
  const int error = pthread_key_create(&mKey, EndOfThread);
  if (error == ENOMEM) throw std::bad_alloc();
  if (error != 0) {
    const std::string reason = std::generic_category().message(error);
    throw YBase::ExceptionImpl<YBase::Message>(
        (std::string(FUNCTION_NAME) + ": cannot create a key for values of threads: " + reason).c_str());
  }
  mbKeyExists = true;
  Join();
}

std::size_t ThreadTables::TakeSlot() {
  const CriticalSection::SmartLock lock(mLock);
  if (!mbKeyExists) CreateKey();
  const auto free = std::find(mSlotsInUse.begin(), mSlotsInUse.end(), false);
  const auto slot = static_cast<std::size_t>(free - mSlotsInUse.begin());
  if (free == mSlotsInUse.end()) mSlotsInUse.push_back(false);
  mSlotsInUse[slot] = true;
  return slot;
}

void ThreadTables::GiveSlotBack(std::size_t slot) noexcept {
  const CriticalSection::SmartLock lock(mLock);
  mSlotsInUse[slot] = false;
}

ThreadContext*& ThreadTables::GetPlace(std::size_t slot) {
  if (spOwn == nullptr || spOwn->mValues.size() <= slot) {
    const CriticalSection::SmartLock lock(mLock);
    if (spOwn == nullptr) CreateTable();
    spOwn->mValues.resize(mSlotsInUse.size());
  }
  return spOwn->mValues[slot];
}

void ThreadTables::CreateTable() {
  auto table = std::make_unique<Table>();
  if (pthread_setspecific(mKey, table.get()) != 0) throw std::bad_alloc();
  spOwn = table.release();
  IntrusiveList::Add(&mpTables, *spOwn);
}

ThreadContext* ThreadTables::TakeValue(std::size_t slot) noexcept {
  const CriticalSection::SmartLock lock(mLock);
  for (Table* table = mpTables; table != nullptr; table = table->mpNext) {
    if (table->mbAbandoned || table->mValues.size() <= slot || table->mValues[slot] == nullptr) continue;
    return std::exchange(table->mValues[slot], nullptr);
  }
  return nullptr;
}

void ThreadTables::Remove(Table& table) noexcept {
  const CriticalSection::SmartLock lock(mLock);
  IntrusiveList::Remove(&mpTables, table);
}

/// If a thread gets another table while this runs, the system calls this again, a few times. A table that is
/// made after the last call is leaked, but its values are disposed of with the storages.
void ThreadTables::EndOfThread(void* own) noexcept {
  // First, so that a context that logs while it is destroyed gets a new table instead of this one.
  spOwn = nullptr;
  const std::unique_ptr<Table> table(static_cast<Table*>(own));
  Get().Remove(*table);
  for (ThreadContext* context : table->mValues) {
    if (context != nullptr) context->Delete();
  }
}

/// The other threads do not exist in the child, and may have been changing their contexts. So these are never
/// touched again, not even to free them.
void ThreadTables::AfterForkInChild() noexcept YSYNCH_NO_THREAD_SAFETY_ANALYSIS {
  for (Table* table = mpTables; table != nullptr; table = table->mpNext) {
    table->mbAbandoned = table->mbAbandoned || table != spOwn;
  }
}

}  // namespace YSynch

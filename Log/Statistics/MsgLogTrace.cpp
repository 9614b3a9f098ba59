#include <YLog/MsgLogTrace.h>

#include <atomic>
#include <cstdio>
#include <exception>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YBase/WideCharToASCII.h>
#include <YSynch/CriticalSection.h>

#include "Statistics/TraceArithmetic.h"
#include "Statistics/TraceFile.h"
#include "Statistics/TraceTable.h"

namespace YLog {

namespace {

constexpr int LAST_PRINTED_MESSAGE = 218;

// Release where it is set, acquire where it is read: a thread that finds the object finds it complete.
constinit std::atomic<MsgLogTrace*> gMsgLogTrace{nullptr};
// Guards the creation of the object.
constinit std::atomic<YSynch::CriticalSection*> mpCS{nullptr};
// Relaxed: a change may be seen late, and nothing else depends on it.
constinit std::atomic<bool> mEnableMsgTrace{false};

long long GetCount(const MsgTraceItem& item) {
  return static_cast<long long>(item.count0) + item.count1 + item.count2;
}

int MergeAverages(const MsgTraceItem& item, long long otherAverage, long long otherCount) {
  return static_cast<int>(GetWeightedAverage(item.average, GetCount(item), otherAverage, otherCount));
}

void Merge(MsgTraceItem& combined, const MsgTraceItem& item) {
  combined.average = MergeAverages(combined, item.average, GetCount(item));
  combined.count0 = AddCounts(combined.count0, item.count0);
  combined.count1 = AddCounts(combined.count1, item.count1);
  combined.count2 = AddCounts(combined.count2, item.count2);
}

int* FindCounter(MsgTraceItem& item, int kind) {
  switch (kind) {
    case 0:
      return &item.count0;
    case 1:
      return &item.count1;
    case 2:
      return &item.count2;
    default:
      return nullptr;
  }
}

/// The average includes a report of any kind, even of an unknown one.
int Fold(MsgTraceItem& item, int duration, int kind) {
  item.average = MergeAverages(item, duration, 1);
  int* counter = FindCounter(item, kind);
  if (counter == nullptr) return 1;
  *counter = AddCounts(*counter, 1);
  return 0;
}

void PrintItems(std::FILE* file, const MsgLogTrace::Items& items, int destinationIndex) {
  const auto end = items.upper_bound({destinationIndex, LAST_PRINTED_MESSAGE});
  for (auto entry = items.lower_bound({destinationIndex, 0}); entry != end; ++entry) {
    const MsgTraceItem& item = entry->second;
    std::fprintf(file, "%d(%d-%d-%d:%d)\t", entry->first.second, item.count0, item.count1, item.count2,
                 item.average);
  }
}

void PrintSnapshot(std::FILE* file, int number, const MsgLogTrace::Items& items,
                   const std::map<std::wstring, int>& destinationIndices) {
  for (const auto& [destination, index] : destinationIndices) {
    std::fprintf(file, "%d\t%-50s\t", number, YBase::WideCharToASCII(destination.c_str()).c_str());
    PrintItems(file, items, index);
    std::fputc('\n', file);
  }
}

/// Returns the empty name, which cannot be opened, if the name is not ASCII.
std::string ToASCIIOrEmpty(const std::wstring& fileName) {
  try {
    return YBase::WideCharToASCII(fileName.c_str());
  } catch (const YBase::Message&) {
    return {};
  }
}

}  // namespace

MsgLogTrace::MsgLogTrace() : mpTable(new TraceTable<std::pair<int, int>, MsgTraceItem>(mLock)) {}

MsgLogTrace::~MsgLogTrace() = default;

void MsgLogTrace::Init() {
  auto section = YSynch::CreateCriticalSection(YSynch::LOCK_STACK_CATEGORY_CLASS);
  delete mpCS.exchange(section.release(), std::memory_order_acq_rel);
}

void MsgLogTrace::Destroy() {
  delete mpCS.exchange(nullptr, std::memory_order_acq_rel);
}

MsgLogTrace* MsgLogTrace::FindOrCreate() {
  MsgLogTrace* trace = gMsgLogTrace.load(std::memory_order_acquire);
  if (trace != nullptr) return trace;
  YSynch::CriticalSection* section = mpCS.load(std::memory_order_acquire);
  if (section == nullptr) return nullptr;
  const YSynch::CriticalSection::SmartLock lock(*section);
  trace = gMsgLogTrace.load(std::memory_order_relaxed);
  if (trace == nullptr) gMsgLogTrace.store(trace = new MsgLogTrace, std::memory_order_release);
  return trace;
}

MsgLogTrace* MsgLogTrace::getInstance() {
  static constexpr const char* FUNCTION_NAME = "YLog::MsgLogTrace::getInstance";
  MsgLogTrace* trace = FindOrCreate();
  if (trace != nullptr) return trace;
  throw YBase::ExceptionImpl<YBase::Message>(
      (std::string(FUNCTION_NAME) + ": the library is not started.").c_str());
}

void MsgLogTrace::SetMsgLogTrace(bool enable) {
  mEnableMsgTrace.store(enable, std::memory_order_relaxed);
}

int MsgLogTrace::SendToLogTrace(unsigned long threadId, int messageId, const std::wstring& destination,
                                int duration, int kind) {
  if (!mEnableMsgTrace.load(std::memory_order_relaxed)) return 1;
  MsgLogTrace* trace = FindOrCreate();
  return trace != nullptr ? trace->AddToLogTrace(threadId, messageId, destination, duration, kind) : 1;
}

int MsgLogTrace::AddToLogTrace(unsigned long threadId, int messageId, const std::wstring& destination,
                               int duration, int kind) {
  int result = 1;
  mpTable->Update(threadId, {GetDstIndex(destination), messageId},
                  [&](MsgTraceItem& item) { result = Fold(item, duration, kind); });
  return result;
}

int MsgLogTrace::GetDstIndex(const std::wstring& destination) {
  // Changes only under the write lock of the one object.
  static int gDstIndex = 0;
  {
    const YSynch::RWLock::ReadSmartLock lock(mLock);
    const auto found = mDestinationIndices.find(destination);
    if (found != mDestinationIndices.end()) return found->second;
  }
  const YSynch::RWLock::WriteSmartLock lock(mLock);
  const auto [entry, inserted] = mDestinationIndices.emplace(destination, gDstIndex);
  if (inserted) ++gDstIndex;
  return entry->second;
}

MsgLogTrace::Items MsgLogTrace::GetCurItem(unsigned long threadId) const {
  return mpTable->GetItems(threadId);
}

void MsgLogTrace::CollectLogTrace() {
  mpTable->Collect(Merge);
}

std::map<std::wstring, int> MsgLogTrace::TakeDestinationIndices() {
  const YSynch::RWLock::WriteSmartLock lock(mLock);
  return std::exchange(mDestinationIndices, {});
}

unsigned MsgLogTrace::PrintAllLogTrace() {
  try {
    TraceFile file(ToASCIIOrEmpty(GetOutputFileName()));
    if (file.Get() == nullptr) return FILE_NOT_OPENED;
    // The snapshots first, because a destination gets its index before its reports are in a snapshot.
    const std::vector<Items> snapshots = mpTable->TakeSnapshots();
    const std::map<std::wstring, int> destinationIndices = TakeDestinationIndices();
    std::fprintf(file.Get(), "%s\n", mCreationTime.ToString().c_str());
    int number = 0;
    for (const Items& items : snapshots) PrintSnapshot(file.Get(), ++number, items, destinationIndices);
    return file.Close() ? 0 : PRINT_FAILED;
  } catch (const std::exception&) {
    return PRINT_FAILED;
  }
}

void MsgLogTrace::Clear() {
  mpTable->Clear();
}

}  // namespace YLog

#include <YLog/CmdLogTrace.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <exception>
#include <iterator>
#include <string>

#include <YBase/WideCharToASCII.h>

#include "Statistics/TraceArithmetic.h"
#include "Statistics/TraceFile.h"
#include "Statistics/TraceTable.h"

namespace YLog {

namespace {

constexpr int FIRST_MARKED_COMMAND = 93;
constexpr int LAST_MARKED_COMMAND = 108;

void Merge(CmdTraceItem& combined, const CmdTraceItem& item) {
  combined.commandId = item.commandId;
  combined.minimum = std::min(combined.minimum, item.minimum);
  combined.maximum = std::max(combined.maximum, item.maximum);
  combined.average = GetWeightedAverage(combined.average, combined.count, item.average, item.count);
  combined.count = AddCounts(combined.count, item.count);
}

/// With a decimal point, whatever the host's locale.
std::string FormatPercentage(long long part, long long total) {
  const double percentage = part == 0 ? 0 : static_cast<double>(part) * 100.0 / static_cast<double>(total);
  char text[32];
  return {text, std::to_chars(text, std::end(text), percentage, std::chars_format::fixed, 2).ptr};
}

void PrintSummary(std::FILE* file, const CmdLogTrace::Items& items) {
  long long marked = 0;
  long long total = 0;
  for (const auto& [commandId, item] : items) {
    total += item.count;
    if (commandId >= FIRST_MARKED_COMMAND && commandId <= LAST_MARKED_COMMAND) marked += item.count;
  }
  std::fprintf(file, "%lld/%lld(%s%%)\t\t", marked, total, FormatPercentage(marked, total).c_str());
}

void PrintSnapshot(std::FILE* file, const CmdLogTrace::Items& items) {
  PrintSummary(file, items);
  for (const auto& [commandId, item] : items) {
    std::fprintf(file, "%d:%d(%lld/%lld/%lld)\t", commandId, item.count, item.minimum, item.average,
                 item.maximum);
  }
  std::fputc('\n', file);
}

}  // namespace

CmdLogTrace::CmdLogTrace() : mpTable(new TraceTable<int, CmdTraceItem>(mLock)) {}

CmdLogTrace::~CmdLogTrace() = default;

void CmdLogTrace::AddToLogTrace(unsigned long threadId, int commandId, long long duration) {
  // A report is merged like the figures of one more command.
  const CmdTraceItem report{commandId, 1, duration, duration, duration};
  mpTable->Update(threadId, commandId, [&report](CmdTraceItem& item) { Merge(item, report); });
}

CmdLogTrace::Items CmdLogTrace::GetCurItem(unsigned long threadId) const {
  return mpTable->GetItems(threadId);
}

void CmdLogTrace::CollectLogTrace() {
  mpTable->Collect(Merge);
}

unsigned CmdLogTrace::PrintAllLogTrace() {
  try {
    TraceFile file(YBase::WideCharToASCII(GetOutputFileName().c_str()));
    if (file.Get() == nullptr) return FILE_NOT_OPENED;
    for (const Items& items : mpTable->TakeSnapshots()) PrintSnapshot(file.Get(), items);
    return file.Close() ? 0 : PRINT_FAILED;
  } catch (const std::exception&) {
    return PRINT_FAILED;
  }
}

void CmdLogTrace::Clear() {
  mpTable->Clear();
}

}  // namespace YLog

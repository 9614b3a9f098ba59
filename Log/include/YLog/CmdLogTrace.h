#pragma once

#include <map>

#include <YBase/StrongPtr.h>
#include <YLog/Export.h>
#include <YLog/LogTrace.h>

namespace YLog {

template <class Key, class Item>
class TraceTable;

/// The figures of one command. The count stops at the limit of `int`; averages drop the remainder, and are
/// right for durations up to the limits of their type.
struct CmdTraceItem {
  int commandId = 0;
  int count = 0;
  long long minimum = 100000000;  ///< Longer durations do not move it.
  long long average = 0;
  long long maximum = 0;
};

/// Counts commands and how long they took, in whatever unit the caller measures.
///
/// The printed file has a line for each snapshot: how many of its commands had an ID of 93 to 108, of how
/// many in all, and the percentage; then for each command its ID, count, minimum, average and maximum.
///
///     2/3(66.67%)\t\t7:1(40/40/40)\t93:2(10/15/20)\t
///
/// A file name that is not ASCII makes printing return `PRINT_FAILED`, with nothing discarded.
///
/// A thread ID is any number that the caller chooses. If each thread has a number of its own, reports do not
/// wait for each other. If all have the same, counts are the same, and averages may be rounded differently.
///
/// Threads: any.
///
/// Failure: `AddToLogTrace` and `GetCurItem` throw `std::bad_alloc`; nothing was counted.
class YLOG_EXPORT CmdLogTrace final : public LogTrace {
 public:
  using Items = std::map<int, CmdTraceItem>;

  CmdLogTrace();
  ~CmdLogTrace() override;

  void AddToLogTrace(unsigned long threadId, int commandId, long long duration);
  /// A copy of what was reported for a thread since the last collection, by command ID.
  Items GetCurItem(unsigned long threadId) const;

  void CollectLogTrace() override;
  unsigned PrintAllLogTrace() override;
  void Clear() override;

 private:
  const YBase::StrongPtr<TraceTable<int, CmdTraceItem>> mpTable;
};

}  // namespace YLog

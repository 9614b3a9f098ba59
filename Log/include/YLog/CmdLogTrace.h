#pragma once

#include <map>

#include <YBase/StrongPtr.h>
#include <YLog/Export.h>
#include <YLog/LogTrace.h>

namespace YLog {

template <class Key, class Item>
class TraceTable;

/// The figures of one command. The count saturates at the limit of `int`. Averages drop the remainder, and
/// are correct for durations up to the limits of their type.
struct CmdTraceItem {
  int commandId = 0;
  int count = 0;
  long long minimum = 100000000;  ///< Longer durations do not change it.
  long long average = 0;
  long long maximum = 0;
};

/// Counts commands and the time that they take, in any unit that the caller chooses.
///
/// The printed file has one line for each snapshot: the number of its commands with an ID from 93 to 108, the
/// number of all its commands, and the percentage; then for each command its ID, count, minimum, average and
/// maximum.
///
///     2/3(66.67%)\t\t7:1(40/40/40)\t93:2(10/15/20)\t
///
/// If the file name is not ASCII, printing returns `PRINT_FAILED` and discards nothing.
///
/// A thread ID is any number that the caller chooses. If each thread has its own number, reports do not wait
/// for each other. If threads share a number, the counts are the same, but averages may be rounded
/// differently.
///
/// Threads: any.
///
/// Failure: `AddToLogTrace` and `GetCurItem` throw `std::bad_alloc`; nothing is counted then.
class YLOG_EXPORT CmdLogTrace final : public LogTrace {
 public:
  using Items = std::map<int, CmdTraceItem>;

  CmdLogTrace();
  ~CmdLogTrace() override;

  void AddToLogTrace(unsigned long threadId, int commandId, long long duration);
  /// A copy of the figures of a thread since the last collection, by command ID.
  Items GetCurItem(unsigned long threadId) const;

  void CollectLogTrace() override;
  unsigned PrintAllLogTrace() override;
  void Clear() override;

 private:
  const YBase::StrongPtr<TraceTable<int, CmdTraceItem>> mpTable;
};

}  // namespace YLog

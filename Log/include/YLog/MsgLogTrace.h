#pragma once

#include <map>
#include <string>
#include <utility>

#include <YBase/StrongPtr.h>
#include <YLog/Export.h>
#include <YLog/LogTrace.h>

namespace YLog {

template <class Key, class Item>
class TraceTable;

/// The figures of one message at one destination: how often each kind of outcome was reported, and the
/// average duration. The caller decides what the kinds mean. Each count saturates at the limit of `int`.
struct MsgTraceItem {
  int count0 = 0;
  int count1 = 0;
  int count2 = 0;
  int average = 0;
};

/// Counts messages by destination, message ID and outcome, and averages the time that they take. There is one
/// object for the whole process. The library itself reports nothing; `SendToLogTrace` counts nothing until
/// `SetMsgLogTrace(true)`. A thread ID is any number that the caller chooses, as for `CmdLogTrace`.
///
/// The printed file begins with the time at which the object was created. Then each snapshot has a line for
/// each destination, with the snapshot's number, the destination's name and, for each message ID, the three
/// counts and the average. Only message IDs from 0 to 218 are printed.
///
///     2024-05-17 09:30:00.123
///     1\torders                                            \t17(2-0-1:35)\t
///
/// Printing also forgets the destinations. So collect immediately before printing: what has been reported,
/// but not yet collected, is counted under a destination that later prints do not show. A file name that is
/// not ASCII is treated as one that cannot be opened. If a destination's name is not ASCII, printing fails.
///
/// Ownership: created at the first request and never destroyed, so that a thread may still report while the
/// process exits.
///
/// Threads: any, except `Init` and `Destroy`.
///
/// Failure: reports and queries throw `std::bad_alloc`; nothing is counted then.
class YLOG_EXPORT MsgLogTrace final : public LogTrace {
 public:
  /// By the index of the destination and the message ID.
  using Items = std::map<std::pair<int, int>, MsgTraceItem>;

  ~MsgLogTrace() override;

  /// `Init` allows `getInstance` to create the object, until `Destroy`. The library calls them when it starts
  /// and stops.
  /// \pre No other thread is in `getInstance` or `SendToLogTrace`.
  static void Init();
  static void Destroy();

  /// Failure: throws `YBase::ExceptionImpl<YBase::Message>` if there is no object yet and no `Initializer` is
  /// alive; `std::bad_alloc`.
  static MsgLogTrace* getInstance();

  /// Switches `SendToLogTrace` on and off. It is off at first. A thread may see a change late.
  static void SetMsgLogTrace(bool enable);
  /// Does what `AddToLogTrace` does. Returns 1 and creates nothing if tracing is off, or if there is no
  /// object yet and the library is not started.
  static int SendToLogTrace(unsigned long threadId, int messageId, const std::wstring& destination,
                            int duration, int kind);

  /// Returns 0. For a kind other than 0, 1 and 2 returns 1 and counts nothing, but the average includes the
  /// duration.
  int AddToLogTrace(unsigned long threadId, int messageId, const std::wstring& destination, int duration,
                    int kind);
  /// The destination's number, assigned when it is first seen: 0, 1, 2 and so on. A destination that is seen
  /// again after printing has a new number.
  int GetDstIndex(const std::wstring& destination);
  /// A copy of the figures of a thread since the last collection.
  Items GetCurItem(unsigned long threadId) const;

  void CollectLogTrace() override;
  unsigned PrintAllLogTrace() override;
  void Clear() override;

 private:
  MsgLogTrace();

  static MsgLogTrace* FindOrCreate();
  std::map<std::wstring, int> TakeDestinationIndices();

  const YBase::StrongPtr<TraceTable<std::pair<int, int>, MsgTraceItem>> mpTable;
  std::map<std::wstring, int> mDestinationIndices YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YLog

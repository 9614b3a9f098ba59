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
/// average duration. What the kinds mean is the caller's. Each count stops at the limit of `int`.
struct MsgTraceItem {
  int count0 = 0;
  int count1 = 0;
  int count2 = 0;
  int average = 0;
};

/// Counts messages by destination, message ID and outcome, and averages how long they took. There is one for
/// the whole process. The library reports nothing itself; `SendToLogTrace` counts nothing until
/// `SetMsgLogTrace(true)`. A thread ID is any number that the caller chooses, as for `CmdLogTrace`.
///
/// The printed file begins with the time at which the object was created; then each snapshot has a line for
/// each destination, with the snapshot's number and, for each message ID, the three counts and the average.
/// Of the message IDs only 0 to 218 are printed.
///
///     2024-05-17 09:30:00.123
///     1\torders                                            \t17(2-0-1:35)\t
///
/// Printing also forgets the destinations. Collect just before: what was reported, but not yet collected, is
/// counted under a destination that later prints do not show. A file name that is not ASCII counts as one
/// that cannot be opened; a destination's name that is not ASCII makes printing fail.
///
/// Ownership: created when first asked for, and never destroyed, so that a thread which still reports while
/// the process exits finds it alive.
///
/// Threads: any, except `Init` and `Destroy`.
///
/// Failure: reports and queries throw `std::bad_alloc`; nothing was counted.
class YLOG_EXPORT MsgLogTrace final : public LogTrace {
 public:
  /// By the index of the destination and the message ID.
  using Items = std::map<std::pair<int, int>, MsgTraceItem>;

  ~MsgLogTrace() override;

  /// Allow `getInstance` to create the object, or no longer. The library calls them when it starts and stops.
  /// \pre No other thread is in `getInstance` or `SendToLogTrace`.
  static void Init();
  static void Destroy();

  /// Failure: throws `YBase::ExceptionImpl<YBase::Message>` if there is no object yet and no `Initializer` is
  /// alive; `std::bad_alloc`.
  static MsgLogTrace* getInstance();

  /// Turns `SendToLogTrace` on and off. Off until it is called; a thread may see the change late.
  static void SetMsgLogTrace(bool enable);
  /// As `AddToLogTrace`, while tracing is on. Returns 1, and creates nothing, while it is off, and where
  /// there is no object and the library is not started.
  static int SendToLogTrace(unsigned long threadId, int messageId, const std::wstring& destination,
                            int duration, int kind);

  /// Returns 0, or 1 for a kind other than 0, 1 and 2: nothing is counted then, but the average takes the
  /// duration in.
  int AddToLogTrace(unsigned long threadId, int messageId, const std::wstring& destination, int duration,
                    int kind);
  /// The destination's number, given at first sight: 0, 1, 2 and so on. A destination that is seen again
  /// after a print gets another one.
  int GetDstIndex(const std::wstring& destination);
  /// A copy of what was reported for a thread since the last collection.
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

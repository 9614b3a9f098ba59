#pragma once

#include <string>

#include <YDataType/DateTime.h>
#include <YLog/Export.h>
#include <YSynch/RWLock.h>

namespace YLog {

/// What the statistics of commands and of messages have in common. Reports are folded, thread by thread, into
/// current figures; collecting adds the figures of all threads up into one snapshot and starts anew; printing
/// writes the snapshots to a text file and discards them.
///
/// Threads: any operation may be called from any thread; a report that meets a collection is in that snapshot
/// or in the next. Two prints at once spoil each other's file.
class YLOG_EXPORT LogTrace {
 public:
  /// What printing returns when the file could not be opened: nothing is discarded.
  static constexpr unsigned FILE_NOT_OPENED = 0x80004003;
  /// What printing returns when the file, once open, could not be written to its end. The snapshots are
  /// discarded all the same.
  static constexpr unsigned PRINT_FAILED = 0x80004005;

  virtual ~LogTrace();
  LogTrace(const LogTrace&) = delete;
  LogTrace& operator=(const LogTrace&) = delete;

  /// Appends a snapshot, an empty one where nothing was reported.
  ///
  /// Failure: `std::bad_alloc`; the current figures stay as they were.
  virtual void CollectLogTrace() = 0;
  /// Returns 0, or one of the two codes above; throws nothing. This one does nothing.
  virtual unsigned PrintAllLogTrace();
  /// Discards the current figures and the snapshots.
  virtual void Clear() = 0;

  /// The file that printing replaces, in ASCII; none until it is set. Null is the empty name, to which
  /// nothing can be printed. A relative name is taken from the current folder of the process when it prints;
  /// the base path of disk files does not matter.
  void SetOutputFileName(const wchar_t* fileName);

 protected:
  LogTrace();

  std::wstring GetOutputFileName() const;

  const YDataType::DateTime mCreationTime;
  mutable YSynch::RWLock mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};

 private:
  std::wstring mOutputFileName YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YLog

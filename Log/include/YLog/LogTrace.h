#pragma once

#include <string>

#include <YDataType/DateTime.h>
#include <YLog/Export.h>
#include <YSynch/RWLock.h>

namespace YLog {

/// What the statistics of commands and of messages have in common. Reports are added to the current figures
/// of their thread. Collecting adds up the figures of all threads in one snapshot, and they begin again at
/// zero. Printing writes the snapshots to a text file and discards them.
///
/// Threads: any thread may call any operation. A report during a collection is in that snapshot or in the
/// next one. If two threads print at once, they spoil each other's file.
class YLOG_EXPORT LogTrace {
 public:
  /// What printing returns if the file could not be opened. Nothing is discarded.
  static constexpr unsigned FILE_NOT_OPENED = 0x80004003;
  /// What printing returns after any other failure. If the file had been opened, the snapshots are discarded
  /// nevertheless.
  static constexpr unsigned PRINT_FAILED = 0x80004005;

  virtual ~LogTrace();
  LogTrace(const LogTrace&) = delete;
  LogTrace& operator=(const LogTrace&) = delete;

  /// Adds a snapshot, which is empty if nothing was reported.
  ///
  /// Failure: `std::bad_alloc`; the current figures stay as they were.
  virtual void CollectLogTrace() = 0;
  /// Returns 0, or one of the two codes above; throws nothing. This implementation does nothing.
  virtual unsigned PrintAllLogTrace();
  /// Discards the current figures and the snapshots.
  virtual void Clear() = 0;

  /// The name, in ASCII, of the file that printing replaces; empty until it is set. Null is the empty name,
  /// to which nothing can be printed. A relative name is resolved against the current folder of the process
  /// when it prints; the base path of disk files does not matter.
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

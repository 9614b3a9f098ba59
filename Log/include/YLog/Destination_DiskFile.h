#pragma once

#include <YBase/ReturnString.h>
#include <YBase/SmartPtrI.h>
#include <YLog/Destination.h>

namespace YLog {

/// Appends records to a file that threads and processes may share, and limits its size by moving its content
/// into numbered backup files beside it: ".bak00" is the newest.
///
/// The file is UTF-8: a byte order mark and a version line, then records that each end in a line feed. When
/// `LogMessage` returns, the kernel has the record. A record is written whole or not at all. A process that
/// is killed during a write leaves at most a fragment, which the next writer puts on a line of its own.
///
/// Threads: any. Several processes may use one file on a local file system. They wait for each other without
/// a time limit, so a process that is stopped while it writes blocks the others.
///
/// Failure: `LogMessage` does not throw when the file system refuses an operation. The destination closes the
/// file, counts the messages that it drops, and tries again at the first message that arrives 300 seconds or
/// more after the last failed attempt, by the wall clock or the monotonic clock. If the attempt succeeds, it
/// first writes a record of how many messages were missed, since when and why. If no such message arrives
/// before the process ends, the count is lost.
///
/// That record is written with the calling thread's own header, which then keeps the record's values: the
/// time, logger "Log", dispatcher "Error", message ID 0. Later destinations of the same dispatcher receive
/// them.
class YLOG_EXPORT Destination_DiskFile : public virtual Destination {
 public:
  /// The maximum size in bytes: 2,000,000 until it is set, at most 2,000,000,000. If the file has reached it,
  /// the next record is written to an empty file, so the file may exceed it by up to one record. Takes effect
  /// at the next record. With 0 no message is written, because an empty file is not rotated.
  virtual void SetMaximumFileSize(unsigned long size) = 0;
  virtual unsigned long GetMaximumFileSize() = 0;

  /// How many backups are kept: 1 until it is set, at most 256. With 0 there is still one, which each
  /// rotation replaces. Takes effect at the next rotation.
  virtual void SetMaximumFileBackup(unsigned long count) = 0;
  virtual unsigned long GetMaximumFileBackup() = 0;

  /// The full path of the file.
  virtual YBase::ReturnWString GetFilePath() const = 0;

 protected:
  ~Destination_DiskFile() override;
};

/// The destination for the file at `path`. All requests for the same normalised path return the same
/// destination. A relative path is resolved against the base path, which is a container folder below `HOME`
/// if that variable is set: see `SetBasePath`. Missing folders are created. If `SetBasePath` has moved a
/// destination away from where its path leads now, the next request for that path returns that destination
/// once more, and later requests return a new one at the new place.
///
/// Failure: for a path longer than the system's limit, throws `YBase::ExceptionImpl<YLog::Exception>` and
/// writes the same text to standard error. A file that cannot be opened is not a failure here: the
/// destination counts what it cannot write. `std::bad_alloc`.
YLOG_EXPORT YBase::SmartPtrI<Destination_DiskFile> GetDestination_DiskFile(const wchar_t* path);

}  // namespace YLog

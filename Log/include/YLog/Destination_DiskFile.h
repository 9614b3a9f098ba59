#pragma once

#include <YBase/ReturnString.h>
#include <YBase/SmartPtrI.h>
#include <YLog/Destination.h>

namespace YLog {

/// Appends records to a file that threads and processes may share, and keeps it under a size limit by moving
/// its content into numbered backup files beside it: ".bak00" is the newest.
///
/// The file is UTF-8: a byte order mark and a version line, then records that each end in a line feed. When
/// `LogMessage` returns, the record is with the kernel. A record is written whole or not at all; a process
/// killed inside a write leaves at most a fragment, which the next writer puts on a line of its own.
///
/// Threads: any. Several processes may use one file on a local file system; they wait for each other without
/// a bound, so a stopped process that is just writing stops the others.
///
/// Failure: what the file system refuses does not leave `LogMessage`. The destination closes the file, counts
/// what it drops, and tries again with the first message that comes 300 seconds or more after the last
/// failure, by the wall clock or the monotonic clock. When it succeeds, it first writes how many messages it
/// missed, since when and why. If no such message comes before the process ends, the count is lost.
///
/// That record is written with the calling thread's own header, which keeps the record's values: the time,
/// logger "Log", dispatcher "Error", message ID 0. Later destinations of the same dispatcher receive them.
class YLOG_EXPORT Destination_DiskFile : public virtual Destination {
 public:
  /// The size in bytes at or above which the next record goes to an empty file: 2,000,000 until it is set, at
  /// most 2,000,000,000. The file may exceed it by up to one record. Takes effect at the next record. With 0
  /// no message is written, because an empty file is not rotated.
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

/// The destination for the file at `path`, shared by all who ask for the same file. A relative path is taken
/// below the base path, which is a container folder below `HOME` where that is set: see `SetBasePath`.
/// Missing folders are created. After `SetBasePath` moved a destination away from where its path leads now,
/// the next request for that path gives that destination once more, and later ones a new destination at the
/// new place.
///
/// Failure: a path that the system cannot take throws `YBase::ExceptionImpl<YLog::Exception>`, and the same
/// text is written to standard error. A file that cannot be opened is not a failure here: the destination
/// counts what it cannot write. `std::bad_alloc`.
YLOG_EXPORT YBase::SmartPtrI<Destination_DiskFile> GetDestination_DiskFile(const wchar_t* path);

}  // namespace YLog

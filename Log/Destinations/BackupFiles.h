#pragma once

#include <string>

#include <YFileSystem/UpdateableFile.h>

namespace YLog {

/// The numbered backups beside a log file, ".bak00" the newest, and the rotation that makes them.
///
/// A rotation copies the log into a file with a name of its own, which ends in ".part", empties the log, and
/// then gives the copy the name ".bak00". A process may be killed between any two of these steps, the log may
/// be moved or deleted at any moment, and another process may know it by another name. So the copy says of
/// itself whether it is complete, and whoever finds one judges it:
///
/// - An incomplete copy is deleted: the log was not emptied.
/// - A complete copy with whose bytes the log begins is deleted: the log was not emptied.
/// - Any other complete copy becomes the newest backup: its records are nowhere else.
///
/// Backups are moved only while the copy is locked, so two processes never move the same ones at once, even
/// if they rotate two files that have had the same name one after the other.
///
/// Threads: the caller holds the log's write lock.
///
/// Failure: operations throw `YBase::ExceptionImpl<YBase::Message>`.
class BackupFiles {
 public:
  /// Of the log file at `path`, `count` of them at most. With 0 there is one, which each rotation replaces.
  BackupFiles(const std::wstring& path, unsigned long count) : mPath(path), mCount(count) {}

  /// Moves what `log` holds into the newest backup and leaves it empty. Does nothing where the path leads to
  /// another file by the time of the emptying, or another process took the name of the copy: to be called
  /// again then.
  ///
  /// Where it fails before the log is emptied, nothing is left of the copy. After that the copy stays, to be
  /// found by the next writer.
  void Rotate(YFileSystem::UpdateableFile& log) const YSYNCH_REQUIRES(log);

  /// Judges the copy that an earlier rotation left, if any. To be called when the log is found empty.
  void SettleInterruptedRotation(YFileSystem::UpdateableFile& log) const;

 private:
  std::wstring BackupPath(unsigned long number) const;
  std::wstring CopyPath() const;
  bool IsTaken(unsigned long number) const;
  unsigned long GetLastNumber() const;
  void MakeRoom() const;

  const std::wstring& mPath;
  const unsigned long mCount;
};

}  // namespace YLog

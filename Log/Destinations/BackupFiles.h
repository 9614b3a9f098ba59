#pragma once

#include <string>

#include <YFileSystem/UpdateableFile.h>

namespace YLog {

/// The numbered backups beside a log file, ".bak00" the newest, and the rotation that makes them.
///
/// A rotation copies the log into a file with a name of its own, which ends in ".part", empties the log, and
/// then gives the copy the name ".bak00". A process may be killed between any two of these steps, the log may
/// be moved or deleted at any moment, and another process may know it by another name. So the copy says of
/// itself whether it is complete, and a writer that finds one decides by that:
///
/// - An incomplete copy is deleted: the log was not emptied.
/// - A complete copy is deleted if the log begins with all its bytes: the log was not emptied.
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

  /// Moves the content of `log` into the newest backup and leaves the log empty. The log stays as it is if
  /// the path leads to another file by then, or another process has taken the name of the copy: the caller
  /// tries again.
  ///
  /// Failure: the copy is deleted, or kept for the next writer to find if the log has been emptied.
  void Rotate(YFileSystem::UpdateableFile& log) const YSYNCH_REQUIRES(log);

  /// Deals with the copy that an earlier rotation left, if any. To be called when the log is found empty.
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

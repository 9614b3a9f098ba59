#pragma once

#include <string>

#include <YFileSystem/UpdateableFile.h>

namespace YLog {

/// The numbered backups beside a log file, ".bak00" the newest.
///
/// A rotation copies the log under a name of its own, empties the log, and only then gives the copy the name
/// ".bak00". Whoever is killed on the way leaves either a full log with a copy that counts for nothing, or an
/// empty log with a whole copy: never a record in both, never one in neither.
///
/// Threads: the caller holds the log's write lock.
///
/// Failure: operations throw `YBase::ExceptionImpl<YBase::Message>`.
class BackupFiles {
 public:
  /// Of the log file at `path`, `count` of them at most. With 0 there is one, which each rotation replaces.
  BackupFiles(const std::wstring& path, unsigned long count) : mPath(path), mCount(count) {}

  /// Moves what `log` holds into the newest backup and leaves it empty. Where the copy fails, the log is
  /// untouched and nothing is left of the copy.
  void Rotate(YFileSystem::UpdateableFile& log) const YSYNCH_REQUIRES(log);

  /// Gives the copy of a rotation that was killed behind the emptying of the log its name. To be called when
  /// the log is found empty.
  void FinishInterruptedRotation() const;

 private:
  std::wstring BackupPath(unsigned long number) const;
  std::wstring CopyPath() const;
  void MakeRoom() const;
  void Copy(YFileSystem::UpdateableFile& log) const;
  void RemoveCopy() const;
  void WriteCopy(YFileSystem::UpdateableFile& log) const;

  const std::wstring& mPath;
  const unsigned long mCount;
};

}  // namespace YLog

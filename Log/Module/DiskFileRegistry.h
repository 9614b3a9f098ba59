#pragma once

#include <map>
#include <string>

#include <YBase/ReturnString.h>
#include <YBase/SmartPtrI.h>
#include <YSynch/RWLock.h>

#include "Destinations/Destination_DiskFile_Impl.h"

namespace YLog {

/// The disk files by path, and the base path that their relative paths are resolved against.
///
/// Threads: any.
class DiskFileRegistry {
 public:
  /// The disk file at `path`, which is created if it is new.
  ///
  /// Failure: what the construction of a disk file throws; nothing is kept.
  YBase::SmartPtrI<Destination_DiskFile> FindOrCreate(const wchar_t* path);

  /// Moves all disk files to where their paths lead from now on. Null is the empty path.
  void SetBasePath(const wchar_t* basePath);
  /// The data folder of the program's container if there is a home folder, otherwise what was set.
  YBase::ReturnWString GetBasePath() const;

 private:
  using Files = std::map<std::wstring, YBase::SmartPtrI<Destination_DiskFile_Impl>>;

  YBase::SmartPtrI<Destination_DiskFile_Impl> Find(const std::wstring& fullPath) const;
  Files PlaceUnder(const std::wstring& basePath) const YSYNCH_REQUIRES(mLock);

  mutable YSynch::RWLock mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};
  std::wstring mBasePath YSYNCH_GUARDED_BY(mLock);
  Files mFilesByRequestedPath YSYNCH_GUARDED_BY(mLock);
  Files mFilesByFullPath YSYNCH_GUARDED_BY(mLock);
};

}  // namespace YLog

#pragma once

#include <cstdint>
#include <string_view>

#include <YBase/ReferenceCounted.h>
#include <YSynch/ThreadAnnotations.h>

namespace YFileSystem {

/// An open file that is written at its end, and that several processes may share.
///
/// Threads: the user of the object serialises all calls. The write lock excludes other processes, and other
/// open instances of the same file; it is held by the instance, not by a thread.
///
/// Fork: a child does not share the parent's descriptor or its lock. It opens the file again when it first
/// needs it.
///
/// Failure: operations throw `YBase::ExceptionImpl<YBase::Message>` naming the path and the system's reason.
class YSYNCH_CAPABILITY("write lock") WriteableFile : public virtual YBase::ReferenceCounted {
 public:
  class WriteSmartLock;

  /// Writes the text at the end, all or nothing: if the file system cuts the write short, the file is
  /// truncated to `size` again.
  ///
  /// \pre `size` is the present size of the file; the write lock is held.
  virtual void Append(std::uint64_t size, std::string_view text) YSYNCH_REQUIRES(this) = 0;

 private:
  /// Waits without a time limit.
  virtual void LockForWriting() YSYNCH_ACQUIRE(this) = 0;
  virtual void UnlockForWriting() noexcept YSYNCH_RELEASE(this) = 0;
};

/// Holds a file's write lock as long as it exists. Holds no reference to the file.
class YSYNCH_SCOPED_CAPABILITY WriteableFile::WriteSmartLock {
 public:
  explicit WriteSmartLock(WriteableFile& file) YSYNCH_ACQUIRE(file) : mFile(file) { mFile.LockForWriting(); }
  ~WriteSmartLock() YSYNCH_RELEASE() { mFile.UnlockForWriting(); }
  WriteSmartLock(const WriteSmartLock&) = delete;
  WriteSmartLock& operator=(const WriteSmartLock&) = delete;

 private:
  WriteableFile& mFile;
};

}  // namespace YFileSystem

#pragma once

#include <cstdint>
#include <string_view>

#include <YBase/ReferenceCounted.h>
#include <YSynch/ThreadAnnotations.h>

namespace YFileSystem {

/// An open file that is written at its end, and that several processes may share.
///
/// Threads: its user serialises all calls. Its write lock keeps other processes and other open instances of
/// the same file away; it is held by the instance, not by a thread.
///
/// Fork: a child does not share the parent's descriptor or its lock: it opens the file anew when it first
/// needs it.
///
/// Failure: operations throw `YBase::ExceptionImpl<YBase::Message>` naming the path and the system's reason.
class YSYNCH_CAPABILITY("write lock") WriteableFile : public virtual YBase::ReferenceCounted {
 public:
  class WriteSmartLock;

  /// Writes the text at the end, all or nothing: what the file system cuts short is taken back to `size`.
  ///
  /// \pre `size` is the present size of the file; the write lock is held.
  virtual void Append(std::uint64_t size, std::string_view text) YSYNCH_REQUIRES(this) = 0;

 private:
  /// Waits without a bound.
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

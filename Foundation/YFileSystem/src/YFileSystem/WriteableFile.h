#pragma once

#include <cstdint>
#include <initializer_list>
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

  /// Writes the pieces one after the other at the end, all or nothing: what the file system cuts short is
  /// taken back to `size`.
  ///
  /// \pre `size` is the present size of the file; the write lock is held.
  virtual void Append(std::uint64_t size, std::initializer_list<std::string_view> pieces)
      YSYNCH_REQUIRES(this) = 0;

 private:
  /// Waits without a bound.
  virtual void LockForWriting() YSYNCH_ACQUIRE(this) = 0;
  virtual void UnlockForWriting() noexcept YSYNCH_RELEASE(this) = 0;
};

/// Holds a file's write lock from construction to `Unlock` or destruction. Holds no reference to the file.
class YSYNCH_SCOPED_CAPABILITY WriteableFile::WriteSmartLock {
 public:
  explicit WriteSmartLock(WriteableFile& file) YSYNCH_ACQUIRE(file) : mpFile(&file) { file.LockForWriting(); }
  ~WriteSmartLock() YSYNCH_RELEASE() {
    if (mpFile != nullptr) mpFile->UnlockForWriting();
  }
  WriteSmartLock(const WriteSmartLock&) = delete;
  WriteSmartLock& operator=(const WriteSmartLock&) = delete;

  /// Gives it back before the end of the scope. A second call does nothing.
  void Unlock() noexcept YSYNCH_RELEASE() {
    if (mpFile != nullptr) mpFile->UnlockForWriting();
    mpFile = nullptr;
  }

 private:
  WriteableFile* mpFile;
};

}  // namespace YFileSystem

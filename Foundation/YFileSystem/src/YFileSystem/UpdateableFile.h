#pragma once

#include <cstddef>
#include <cstdint>

#include <YBase/SmartPtrI.h>
#include <YFileSystem/FileFacts.h>
#include <YFileSystem/WriteableFile.h>

namespace YFileSystem {

/// What happens to the new content of a file that is closed without being committed.
enum IF_COMMIT_AND_CLOSE_WAS_NOT_CALLED : int {
  KEEP_WHAT_WAS_WRITTEN = 2,
};

/// A `WriteableFile` that can also be queried, read, positioned and truncated.
class UpdateableFile : public virtual WriteableFile {
 public:
  /// What is at the path by which the file was opened.
  struct PathState {
    bool mIsThisFile;     ///< False if nothing or another file is there, or if the query fails.
    std::uint64_t mSize;  ///< Bytes; 0 if it is not this file.
  };

  /// Queries the path once, for existence, identity and size together.
  virtual PathState QueryPath() = 0;

  /// Queries the open file, wherever it is now.
  virtual FileFacts Query() = 0;

  /// Sets where `Read` and `Truncate` apply, in bytes from the beginning. `Append` neither uses nor changes
  /// it.
  virtual void SetPosition(std::uint64_t position) noexcept = 0;

  /// Reads up to `count` bytes, moves the position past them and returns their number, which is less than
  /// `count` only at the end of the file.
  virtual std::size_t Read(char* buffer, std::size_t count) = 0;

  /// Cuts the file off at the position.
  virtual void Truncate() YSYNCH_REQUIRES(this) = 0;
};

/// Opens the file at the path; if it is missing, creates it with mode 0640, less the bits of the umask. A
/// symbolic link is followed. Never blocks: anything but a regular file (a directory, a pipe, a device) is
/// refused. The descriptor is closed on exec.
///
/// Failure: throws `YBase::ExceptionImpl<YBase::Message>` naming the path and the system's reason.
YBase::SmartPtrI<UpdateableFile> OpenUpdateableFile(const wchar_t* path,
                                                    IF_COMMIT_AND_CLOSE_WAS_NOT_CALLED mode);

}  // namespace YFileSystem

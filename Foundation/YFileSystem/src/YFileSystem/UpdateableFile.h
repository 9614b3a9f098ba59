#pragma once

#include <cstddef>
#include <cstdint>

#include <YBase/SmartPtrI.h>
#include <YFileSystem/FileFacts.h>
#include <YFileSystem/WriteableFile.h>

namespace YFileSystem {

/// What becomes of a file's new content when it is let go without having been committed.
enum IF_COMMIT_AND_CLOSE_WAS_NOT_CALLED : int {
  KEEP_WHAT_WAS_WRITTEN = 2,
};

/// A `WriteableFile` that can also be sized, read, positioned and truncated.
class UpdateableFile : public virtual WriteableFile {
 public:
  /// What stands at the path that the file was opened by.
  struct PathState {
    bool mIsThisFile;     ///< False where nothing is there, another file than the open one, or no answer.
    std::uint64_t mSize;  ///< Bytes; 0 where it is not this file.
  };

  /// Asks the file system once for existence, identity and size together.
  virtual PathState QueryPath() = 0;

  /// Asks about the open file, wherever it is now.
  virtual FileFacts Query() = 0;

  /// Where `Read` and `Truncate` apply, in bytes from the beginning. `Append` neither uses nor moves it.
  virtual void SetPosition(std::uint64_t position) noexcept = 0;

  /// Reads up to `count` bytes, moves the position behind them and returns how many there were: fewer only
  /// at the end of the file.
  virtual std::size_t Read(char* buffer, std::size_t count) = 0;

  /// Cuts the file off at the position.
  virtual void Truncate() YSYNCH_REQUIRES(this) = 0;
};

/// Opens the file at the path, creating it with mode 0640 less the umask where it is missing. A symbolic
/// link is followed. Never blocks: what is no regular file (a directory, a pipe, a device) is refused. The
/// descriptor is closed on exec.
///
/// Failure: throws `YBase::ExceptionImpl<YBase::Message>` naming the path and the system's reason.
YBase::SmartPtrI<UpdateableFile> OpenUpdateableFile(const wchar_t* path,
                                                    IF_COMMIT_AND_CLOSE_WAS_NOT_CALLED mode);

}  // namespace YFileSystem

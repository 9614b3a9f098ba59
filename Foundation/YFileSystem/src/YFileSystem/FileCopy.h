#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <YBase/Descriptor.h>
#include <YFileSystem/FileFacts.h>
#include <YFileSystem/UpdateableFile.h>

namespace YFileSystem {

/// A copy of a file, under a name of its own, that shows whether it is complete: until then, nobody has
/// permission to read it. The process that makes it keeps it locked, so that another process that finds it
/// knows whether it is still being made.
///
/// A copy that was created is deleted with this object unless it is kept or moved. One that was found stays
/// unless it is deleted.
///
/// Threads: belongs to one thread.
///
/// Failure: operations throw `YBase::ExceptionImpl<YBase::Message>` naming the path and the system's reason.
class FileCopy {
 public:
  /// Creates an incomplete copy and locks it. Returns nothing if the name is taken.
  static std::optional<FileCopy> Create(const wchar_t* path);

  /// The copy that has this name, locked. If a process is still making it, waits for that process without a
  /// time limit. Returns nothing if there is no copy; a link, or another file that cannot be a copy, is
  /// deleted. A copy that this process may not open is returned without a lock.
  static std::optional<FileCopy> Find(const wchar_t* path, UpdateableFile& original);

  FileCopy(FileCopy&& other) noexcept;
  FileCopy& operator=(FileCopy&&) = delete;
  ~FileCopy();

  /// Copies the original from beginning to end. Returns false if the file system cuts the copy short.
  bool Fill(UpdateableFile& original);

  /// Gives the copy the permissions of the original, and its owner and group as far as this process may set
  /// them. From now on it is complete.
  void Complete(UpdateableFile& original);
  bool IsComplete() const noexcept;

  /// Whether the original begins with all bytes of the copy. False if the copy cannot be read.
  bool IsBeginningOf(UpdateableFile& original);

  /// Whether the copy still has the name under which it was created or found.
  bool HasItsName() const;

  /// Lets the copy stay under its name.
  void Keep() noexcept { mbDelete = false; }
  void Delete();
  /// Renames the copy, replacing whatever has the new name. Does nothing if another process has moved the
  /// copy.
  void MoveTo(const wchar_t* path);

 private:
  FileCopy(std::wstring path, YBase::Descriptor descriptor) noexcept;

  static std::optional<FileCopy> Open(const wchar_t* path, const FileFacts& found);
  bool LockUnlessRenamed();
  bool Write(const char* data, std::size_t size) const noexcept;
  std::size_t ReadAt(std::uint64_t position, char* buffer, std::size_t size) const;
  [[noreturn]] void Fail(const char* function, const char* action, int error) const;

  std::wstring mPath;
  // None if this process may not open the copy.
  YBase::Descriptor mDescriptor;
  FileFacts mFacts;
  bool mbDelete = false;
};

}  // namespace YFileSystem

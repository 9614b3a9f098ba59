#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <YBase/Descriptor.h>
#include <YFileSystem/FileFacts.h>
#include <YFileSystem/UpdateableFile.h>

namespace YFileSystem {

/// A copy of a file, under a name of its own, that says of itself whether it is complete: until then nobody
/// may read it. Its maker keeps it locked, so whoever finds it knows whether the maker is still at work.
///
/// A copy that was created is deleted with this object unless it is kept or moved. One that was found stays
/// unless it is deleted.
///
/// Threads: belongs to one.
///
/// Failure: operations throw `YBase::ExceptionImpl<YBase::Message>` naming the path and the system's reason.
class FileCopy {
 public:
  /// Creates an incomplete copy and locks it. None where the name is taken.
  static std::optional<FileCopy> Create(const wchar_t* path);

  /// The copy that has this name, locked: a maker that is alive is waited for without a bound. None where
  /// there is no copy; a link, or another file that cannot be one, is deleted. A copy that this process may
  /// not open comes without a lock.
  static std::optional<FileCopy> Find(const wchar_t* path, UpdateableFile& original);

  FileCopy(FileCopy&& other) noexcept;
  FileCopy& operator=(FileCopy&&) = delete;
  ~FileCopy();

  /// Copies the original from beginning to end. False where the file system cuts the copy short.
  bool Fill(UpdateableFile& original);

  /// Gives it the permissions of the original, and its owner and group as far as this process may. From now
  /// on it is complete.
  void Complete(UpdateableFile& original);
  bool IsComplete() const noexcept;

  /// Whether the original begins with all bytes of the copy. False if the copy cannot be read.
  bool IsBeginningOf(UpdateableFile& original);

  /// Whether it still has the name that it was created or found by.
  bool HasItsName() const;

  /// It stays under its name.
  void Keep() noexcept { mbDelete = false; }
  void Delete();
  /// Gives it another name, replacing what has that. Does nothing where somebody else has moved the copy.
  void MoveTo(const wchar_t* path);

 private:
  FileCopy(std::wstring path, YBase::Descriptor descriptor) noexcept;

  static std::optional<FileCopy> Open(const wchar_t* path, const FileFacts& found);
  bool LockUnlessRenamed();
  bool Write(const char* data, std::size_t size) const noexcept;
  std::size_t ReadAt(std::uint64_t position, char* buffer, std::size_t size) const;
  [[noreturn]] void Fail(const char* function, const char* action, int error) const;

  std::wstring mPath;
  // None where this process may not open the copy.
  YBase::Descriptor mDescriptor;
  FileFacts mFacts;
  bool mbDelete = false;
};

}  // namespace YFileSystem

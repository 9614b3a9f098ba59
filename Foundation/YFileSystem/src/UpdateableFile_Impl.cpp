#include "UpdateableFile_Impl.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cassert>
#include <cerrno>
#include <csignal>
#include <optional>
#include <utility>

#include <YBase/SignalGuard.h>
#include <YBase/TextConversion.h>

#include "Failure.h"
#include "FileOperations.h"

namespace YFileSystem {

UpdateableFile_Impl::UpdateableFile_Impl(std::string path) : mPath(std::move(path)) {
  Open();
  Join();
}

UpdateableFile_Impl::~UpdateableFile_Impl() {
  Leave();
}

void UpdateableFile_Impl::Open() {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::OpenUpdateableFile";
  // Non-blocking, because there may be a pipe or a slow device at the path.
  constexpr int FLAGS = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  mDescriptor =
      YBase::Descriptor(FileOperations::Call(&FileOperations::Open, mPath.c_str(), FLAGS, NEW_FILE_MODE));
  if (!mDescriptor) ThrowFailure(FUNCTION_NAME, "open", mPath, errno);

  FileFacts facts;
  const int error = FileOperations::GetCurrent().QueryDescriptor(mDescriptor.Get(), facts) == 0 ? 0 : errno;
  if (error != 0 || facts.mType != FileFacts::Type::REGULAR) {
    mDescriptor.Close();
    ThrowFailure(FUNCTION_NAME, "open", mPath, error != 0 ? ReasonOf(error) : "Not a regular file");
  }
  mIdentity = facts.mIdentity;
  mFileSizeLimit.Refresh();
}

void UpdateableFile_Impl::OpenUnlessOpen() {
  if (!mDescriptor) Open();
}

/// A lock belongs to the open file, which parent and child would share: it would not exclude them from each
/// other, and a child that never uses the file would keep the lock of a parent that has died.
void UpdateableFile_Impl::AfterForkInChild() noexcept {
  mDescriptor.Close();
}

void UpdateableFile_Impl::LockForWriting() {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::UpdateableFile_Impl::LockForWriting";
  OpenUnlessOpen();
  if (FileOperations::Call(&FileOperations::Lock, mDescriptor.Get(), LOCK_EX) == 0) return;
  ThrowFailure(FUNCTION_NAME, "lock", mPath, errno);
}

void UpdateableFile_Impl::UnlockForWriting() noexcept {
  if (mDescriptor) FileOperations::GetCurrent().Lock(mDescriptor.Get(), LOCK_UN);
}

UpdateableFile::PathState UpdateableFile_Impl::QueryPath() {
  OpenUnlessOpen();
  FileFacts facts;
  if (FileOperations::GetCurrent().QueryPath(mPath.c_str(), facts) != 0) return {false, 0};
  if (facts.mIdentity != mIdentity) return {false, 0};
  return {true, facts.mSize};
}

FileFacts UpdateableFile_Impl::Query() {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::UpdateableFile_Impl::Query";
  OpenUnlessOpen();
  FileFacts facts;
  if (FileOperations::GetCurrent().QueryDescriptor(mDescriptor.Get(), facts) == 0) return facts;
  ThrowFailure(FUNCTION_NAME, "query", mPath, errno);
}

void UpdateableFile_Impl::Append(std::uint64_t size, std::string_view text) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::UpdateableFile_Impl::Append";
  OpenUnlessOpen();
  // Exceeding the process's file-size limit must be an error, not a signal that ends the process.
  std::optional<YBase::SignalGuard> guard;
  if (mFileSizeLimit.IsPassedBy(size + text.size())) guard.emplace(SIGXFSZ);
  std::string_view rest = text;
  const int error = Write(rest);
  if (error == 0) return;

  // Before the failure is reported, because that needs memory.
  const int second = rest.size() != text.size() ? TruncateTo(size) : 0;
  std::string reason = ReasonOf(error);
  if (second != 0) reason += "; what was written stays, because it cannot be cut off: " + ReasonOf(second);
  ThrowFailure(FUNCTION_NAME, "write to", mPath, reason);
}

/// Removes from `rest` what has been written. Returns 0 if that is everything, otherwise the error number.
int UpdateableFile_Impl::Write(std::string_view& rest) const noexcept {
  while (!rest.empty()) {
    const ssize_t written =
        FileOperations::Call(&FileOperations::Write, mDescriptor.Get(), rest.data(), rest.size());
    if (written < 0) return errno;
    // No file system does this, but repeating the call could take forever.
    if (written == 0) return EIO;
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

std::size_t UpdateableFile_Impl::Read(char* buffer, std::size_t count) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::UpdateableFile_Impl::Read";
  OpenUnlessOpen();
  std::size_t total = 0;
  while (total != count) {
    const ssize_t read = FileOperations::Call(&FileOperations::ReadAt, mDescriptor.Get(), buffer + total,
                                              count - total, mPosition + total);
    if (read < 0) ThrowFailure(FUNCTION_NAME, "read", mPath, errno);
    if (read == 0) break;
    total += static_cast<std::size_t>(read);
  }
  mPosition += total;
  return total;
}

void UpdateableFile_Impl::Truncate() {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::UpdateableFile_Impl::Truncate";
  OpenUnlessOpen();
  mFileSizeLimit.Refresh();
  std::optional<YBase::SignalGuard> guard;
  if (mFileSizeLimit.IsPassedBy(mPosition)) guard.emplace(SIGXFSZ);
  if (const int error = TruncateTo(mPosition)) ThrowFailure(FUNCTION_NAME, "truncate", mPath, error);
}

int UpdateableFile_Impl::TruncateTo(std::uint64_t size) const noexcept {
  return FileOperations::Call(&FileOperations::Truncate, mDescriptor.Get(), size) == 0 ? 0 : errno;
}

YBase::SmartPtrI<UpdateableFile> OpenUpdateableFile(
    const wchar_t* path, [[maybe_unused]] IF_COMMIT_AND_CLOSE_WAS_NOT_CALLED mode) {
  assert(mode == KEEP_WHAT_WAS_WRITTEN);
  return YBase::SmartPtrI<UpdateableFile>(new UpdateableFile_Impl(YBase::WideCharToUTF8(path)));
}

}  // namespace YFileSystem

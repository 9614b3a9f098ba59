#include <YFileSystem/FileCopy.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <utility>

#include <YBase/Message.h>
#include <YBase/SignalGuard.h>
#include <YBase/TextConversion.h>
#include <YFileSystem/File.h>

#include "Failure.h"
#include "FileOperations.h"

namespace YFileSystem {

namespace {

constexpr mode_t INCOMPLETE = S_IWUSR;
// Makes `fchown` keep the owner or the group.
constexpr unsigned UNCHANGED = static_cast<unsigned>(-1);
constexpr unsigned ANY_READ = S_IRUSR | S_IRGRP | S_IROTH;

// 256 KiB: one buffer, never the whole file.
constexpr std::size_t BUFFER_SIZE = 262144;

bool AllowsReading(const FileFacts& facts) noexcept {
  return (facts.mPermissions & ANY_READ) != 0;
}

bool ChangeOwner(const YBase::Descriptor& descriptor, unsigned owner, unsigned group) noexcept {
  return FileOperations::Call(&FileOperations::ChangeOwner, descriptor.Get(), owner, group) == 0;
}

}  // namespace

FileCopy::FileCopy(std::wstring path, YBase::Descriptor descriptor) noexcept
    : mPath(std::move(path)), mDescriptor(std::move(descriptor)) {}

FileCopy::FileCopy(FileCopy&& other) noexcept
    : mPath(std::move(other.mPath)),
      mDescriptor(std::move(other.mDescriptor)),
      mFacts(other.mFacts),
      mbDelete(std::exchange(other.mbDelete, false)) {}

FileCopy::~FileCopy() {
  if (!mbDelete) return;
  try {
    Delete();
  } catch (...) {
    // The failure that led here is the one to report. If the copy cannot be deleted, the next rotation
    // examines it.
  }
}

std::optional<FileCopy> FileCopy::Create(const wchar_t* path) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::FileCopy::Create";
  constexpr int FLAGS = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  const std::string file = YBase::WideCharToUTF8(path);
  YBase::Descriptor descriptor(FileOperations::Call(&FileOperations::Open, file.c_str(), FLAGS, INCOMPLETE));
  if (!descriptor) {
    if (errno == EEXIST) return std::nullopt;
    ThrowFailure(FUNCTION_NAME, "create", file, errno);
  }
  FileCopy copy(path, std::move(descriptor));
  copy.mbDelete = true;
  // Another process may have found it before it was locked, and deleted it as incomplete.
  if (!copy.LockUnlessRenamed()) return std::nullopt;
  return copy;
}

std::optional<FileCopy> FileCopy::Find(const wchar_t* path, UpdateableFile& original) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::FileCopy::Find";
  while (const std::optional<FileFacts> found = File::Query(path)) {
    if (found->mType == FileFacts::Type::DIRECTORY) {
      ThrowFailure(FUNCTION_NAME, "open", YBase::WideCharToUTF8(path), EISDIR);
    }
    // Another name of the original is not opened: this would wait for a lock that it holds itself.
    if (found->mType != FileFacts::Type::REGULAR || found->mIdentity == original.Query().mIdentity) {
      File::Delete(path);
      continue;
    }
    std::optional<FileCopy> copy = Open(path, *found);
    if (copy && (!copy->mDescriptor || copy->LockUnlessRenamed()) &&
        AllowsReading(copy->mFacts) == AllowsReading(*found)) {
      return copy;
    }
  }
  return std::nullopt;
}

/// None if the name no longer leads to a file.
std::optional<FileCopy> FileCopy::Open(const wchar_t* path, const FileFacts& found) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::FileCopy::Find";
  const int flags =
      (AllowsReading(found) ? O_RDONLY : O_WRONLY) | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const std::string file = YBase::WideCharToUTF8(path);
  FileCopy copy(
      path, YBase::Descriptor(FileOperations::Call(&FileOperations::Open, file.c_str(), flags, mode_t{0})));
  if (!copy.mDescriptor) {
    if (errno == ENOENT || errno == ELOOP) return std::nullopt;
    if (errno != EACCES) copy.Fail(FUNCTION_NAME, "open", errno);
  }
  copy.mFacts = found;
  return copy;
}

/// Waits for the lock. False if the name no longer leads to this copy.
bool FileCopy::LockUnlessRenamed() {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::FileCopy::Lock";
  if (FileOperations::Call(&FileOperations::Lock, mDescriptor.Get(), LOCK_EX) != 0) {
    Fail(FUNCTION_NAME, "lock", errno);
  }
  if (FileOperations::Call(&FileOperations::QueryDescriptor, mDescriptor.Get(), mFacts) != 0) {
    Fail(FUNCTION_NAME, "query", errno);
  }
  return HasItsName();
}

bool FileCopy::Fill(UpdateableFile& original) {
  // Exceeding the process's file-size limit must be an error, not a signal that ends the process.
  const YBase::SignalGuard guard(SIGXFSZ);
  const auto buffer = std::make_unique<char[]>(BUFFER_SIZE);
  original.SetPosition(0);
  while (const std::size_t count = original.Read(buffer.get(), BUFFER_SIZE)) {
    if (!Write(buffer.get(), count)) return false;
  }
  return true;
}

bool FileCopy::Write(const char* data, std::size_t size) const noexcept {
  const ssize_t written = FileOperations::Call(&FileOperations::Write, mDescriptor.Get(), data, size);
  return written >= 0 && static_cast<std::size_t>(written) == size;
}

void FileCopy::Complete(UpdateableFile& original) {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::FileCopy::Complete";
  const FileFacts wanted = original.Query();
  unsigned permissions = wanted.mPermissions;
  // The group first: if it cannot be set, another group must not get its permissions.
  if (wanted.mGroup != mFacts.mGroup && !ChangeOwner(mDescriptor, UNCHANGED, wanted.mGroup)) {
    permissions &= ~static_cast<unsigned>(S_IRWXG);
  }
  if ((permissions & ANY_READ) == 0) permissions |= S_IRUSR;
  if (FileOperations::Call(&FileOperations::ChangePermissions, mDescriptor.Get(), permissions) != 0) {
    Fail(FUNCTION_NAME, "set the permissions of", errno);
  }
  mFacts.mPermissions = permissions;
  // The owner last: after giving a file away, a process may no longer change its permissions.
  if (wanted.mOwner != mFacts.mOwner) ChangeOwner(mDescriptor, wanted.mOwner, UNCHANGED);
}

bool FileCopy::IsComplete() const noexcept {
  return AllowsReading(mFacts);
}

bool FileCopy::IsBeginningOf(UpdateableFile& original) {
  if (!mDescriptor || mFacts.mSize > original.Query().mSize) return false;
  const auto mine = std::make_unique<char[]>(BUFFER_SIZE);
  const auto others = std::make_unique<char[]>(BUFFER_SIZE);
  original.SetPosition(0);
  for (std::uint64_t position = 0; position < mFacts.mSize;) {
    const std::size_t count = ReadAt(position, mine.get(), BUFFER_SIZE);
    if (original.Read(others.get(), count) != count) return false;
    if (std::memcmp(mine.get(), others.get(), count) != 0) return false;
    position += count;
  }
  return true;
}

/// Reads as many bytes as there are, at least one.
std::size_t FileCopy::ReadAt(std::uint64_t position, char* buffer, std::size_t size) const {
  static constexpr const char* FUNCTION_NAME = "YFileSystem::FileCopy::Read";
  const ssize_t count =
      FileOperations::Call(&FileOperations::ReadAt, mDescriptor.Get(), buffer, size, position);
  if (count > 0) return static_cast<std::size_t>(count);
  Fail(FUNCTION_NAME, "read", count < 0 ? errno : EIO);
}

bool FileCopy::HasItsName() const {
  const std::optional<FileFacts> found = File::Query(mPath.c_str());
  return found && found->mIdentity == mFacts.mIdentity;
}

void FileCopy::Delete() {
  if (HasItsName()) File::Delete(mPath.c_str());
  mbDelete = false;
}

void FileCopy::MoveTo(const wchar_t* path) {
  mbDelete = false;
  try {
    File::Move(mPath.c_str(), path);
  } catch (const YBase::Message&) {
    if (HasItsName()) throw;
  }
}

void FileCopy::Fail(const char* function, const char* action, int error) const {
  ThrowFailure(function, action, YBase::WideCharToUTF8(mPath.c_str()), error);
}

}  // namespace YFileSystem

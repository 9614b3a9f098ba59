#pragma once

#include <cerrno>

#include "support/FileOperationsWrapper.h"

namespace Support {

/// The failures of one kind of call.
class Fault {
 public:
  /// After `successesBefore` calls, the next `times` calls fail with this error number.
  void Inject(int error, int times = 1, int successesBefore = 0) noexcept {
    mError = error;
    mTimesLeft = times;
    mSuccessesLeft = successesBefore;
  }

  /// Whether everything that was injected has happened.
  bool HasHappened() const noexcept { return mTimesLeft == 0; }

  /// Returns whether the call must fail, and sets `errno` if so.
  bool Strikes() noexcept {
    if (mTimesLeft == 0) return false;
    if (mSuccessesLeft != 0) {
      --mSuccessesLeft;
      return false;
    }
    --mTimesLeft;
    errno = mError;
    return true;
  }

 private:
  int mError = 0;
  int mTimesLeft = 0;
  int mSuccessesLeft = 0;
};

/// The system's file operations, each of which can be made to fail.
class FaultyFileOperations final : public FileOperationsWrapper {
 public:
  Fault mOpen;
  Fault mLock;
  Fault mReadAt;
  Fault mWrite;
  Fault mTruncate;
  Fault mChangePermissions;
  Fault mChangeOwner;
  Fault mRename;
  Fault mUnlink;
  Fault mQueryPath;
  Fault mQueryName;
  Fault mQueryDescriptor;

  int Open(const char* path, int flags, mode_t mode) noexcept override {
    return mOpen.Strikes() ? -1 : FileOperationsWrapper::Open(path, flags, mode);
  }
  int Lock(int descriptor, int operation) noexcept override {
    return mLock.Strikes() ? -1 : FileOperationsWrapper::Lock(descriptor, operation);
  }
  ssize_t ReadAt(int descriptor, char* buffer, std::size_t count, std::uint64_t position) noexcept override {
    return mReadAt.Strikes() ? -1 : FileOperationsWrapper::ReadAt(descriptor, buffer, count, position);
  }
  ssize_t Write(int descriptor, const char* text, std::size_t count) noexcept override {
    return mWrite.Strikes() ? -1 : FileOperationsWrapper::Write(descriptor, text, count);
  }
  int Truncate(int descriptor, std::uint64_t size) noexcept override {
    return mTruncate.Strikes() ? -1 : FileOperationsWrapper::Truncate(descriptor, size);
  }
  int ChangePermissions(int descriptor, mode_t permissions) noexcept override {
    return mChangePermissions.Strikes() ? -1
                                        : FileOperationsWrapper::ChangePermissions(descriptor, permissions);
  }
  int ChangeOwner(int descriptor, uid_t owner, gid_t group) noexcept override {
    return mChangeOwner.Strikes() ? -1 : FileOperationsWrapper::ChangeOwner(descriptor, owner, group);
  }
  int Rename(const char* from, const char* to) noexcept override {
    return mRename.Strikes() ? -1 : FileOperationsWrapper::Rename(from, to);
  }
  int Unlink(const char* path) noexcept override {
    return mUnlink.Strikes() ? -1 : FileOperationsWrapper::Unlink(path);
  }
  int QueryPath(const char* path, YFileSystem::FileFacts& facts) noexcept override {
    return mQueryPath.Strikes() ? -1 : FileOperationsWrapper::QueryPath(path, facts);
  }
  int QueryName(const char* path, YFileSystem::FileFacts& facts) noexcept override {
    return mQueryName.Strikes() ? -1 : FileOperationsWrapper::QueryName(path, facts);
  }
  int QueryDescriptor(int descriptor, YFileSystem::FileFacts& facts) noexcept override {
    return mQueryDescriptor.Strikes() ? -1 : FileOperationsWrapper::QueryDescriptor(descriptor, facts);
  }

 private:
  const ScopedFileOperations mScope{*this};
};

}  // namespace Support

#include "Destinations/BackupFiles.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cwchar>
#include <memory>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YBase/SignalGuard.h>
#include <YBase/TextConversion.h>
#include <YFileSystem/File.h>
#include <YFileSystem/Path.h>

namespace YLog {

namespace {

// One buffer, never the whole file.
constexpr std::size_t COPY_BUFFER_SIZE = 262144;

/// Closes a descriptor at the end of its scope.
class DescriptorGuard {
 public:
  explicit DescriptorGuard(int descriptor) : mDescriptor(descriptor) {}
  ~DescriptorGuard() { ::close(mDescriptor); }
  DescriptorGuard(const DescriptorGuard&) = delete;
  DescriptorGuard& operator=(const DescriptorGuard&) = delete;

 private:
  const int mDescriptor;
};

bool WriteWhole(int descriptor, const char* data, std::size_t size) {
  // A file-size limit of the process is to be an error, not a signal that ends it.
  const YBase::SignalGuard guard(SIGXFSZ);
  ssize_t written;
  do {
    written = ::write(descriptor, data, size);
  } while (written < 0 && errno == EINTR);
  return written >= 0 && static_cast<std::size_t>(written) == size;
}

}  // namespace

void BackupFiles::Rotate(YFileSystem::UpdateableFile& log) const {
  // Room is made first: on a full disk the oldest backup gives the copy its space.
  MakeRoom();
  Copy(log);
  log.SetPosition(0);
  log.Truncate();
  YFileSystem::File::Move(CopyPath().c_str(), BackupPath(0).c_str());
}

void BackupFiles::FinishInterruptedRotation() const {
  if (!YFileSystem::Path::IsFile(CopyPath().c_str())) return;
  MakeRoom();
  YFileSystem::File::Move(CopyPath().c_str(), BackupPath(0).c_str());
}

void BackupFiles::MakeRoom() const {
  if (mCount == 0) return;
  unsigned long free = 0;
  while (free < mCount && YFileSystem::Path::IsFile(BackupPath(free).c_str())) ++free;
  if (free == mCount) {
    --free;
    YFileSystem::File::Delete(BackupPath(free).c_str());
  }
  for (; free > 0; --free) {
    YFileSystem::File::Move(BackupPath(free - 1).c_str(), BackupPath(free).c_str());
  }
}

void BackupFiles::Copy(YFileSystem::UpdateableFile& log) const {
  try {
    WriteCopy(log);
  } catch (...) {
    RemoveCopy();
    throw;
  }
}

void BackupFiles::RemoveCopy() const {
  try {
    YFileSystem::File::Delete(CopyPath().c_str());
  } catch (const YBase::Message&) {
    // The failure that led here is the one to tell of; the next rotation begins by deleting the copy.
  }
}

void BackupFiles::WriteCopy(YFileSystem::UpdateableFile& log) const {
  const int descriptor = YFileSystem::File::OpenDescriptor(
      CopyPath().c_str(), YFileSystem::File::OPEN_MODE_CREATE, YFileSystem::File::SHARE_MODE_NONE);
  const DescriptorGuard guard(descriptor);
  const auto buffer = std::make_unique<char[]>(COPY_BUFFER_SIZE);
  log.SetPosition(0);
  while (const std::size_t count = log.Read(buffer.get(), COPY_BUFFER_SIZE)) {
    if (WriteWhole(descriptor, buffer.get(), count)) continue;
    throw YBase::ExceptionImpl<YBase::Message>(
        ("YLog::Destination_DiskFile_Impl::WriteMessage: ::write failed for file " +
         YBase::WideCharToUTF8(BackupPath(0).c_str()) + ".")
            .c_str());
  }
}

std::wstring BackupFiles::BackupPath(unsigned long number) const {
  wchar_t suffix[32];
  std::swprintf(suffix, std::size(suffix), L".bak%02lu", number);
  return mPath + suffix;
}

std::wstring BackupFiles::CopyPath() const {
  return mPath + L".rotating";
}

}  // namespace YLog

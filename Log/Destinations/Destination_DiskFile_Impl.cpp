#include "Destinations/Destination_DiskFile_Impl.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include <YBase/CancellationGuard.h>
#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YBase/NullText.h>
#include <YBase/NumberText.h>
#include <YBase/TextConversion.h>
#include <YFileSystem/Directory.h>
#include <YFileSystem/Path.h>
#include <YLog/MessageHeader.h>
#include <YLog/ThreadContext.h>

#include "Destinations/BackupFiles.h"
#include "ModuleMain.h"

namespace YLog {

namespace {

constexpr const char* LOG_VERSION_LINE = "# Vellatorquine Log version 2.0";
constexpr unsigned long MAXIMUM_FILE_SIZE_LIMIT = 2000000000;
constexpr unsigned long MAXIMUM_FILE_BACKUP_LIMIT = 256;
constexpr int MAXIMUM_ATTEMPTS = 10;

}  // namespace

Destination_DiskFile::~Destination_DiskFile() = default;

Destination_DiskFile_Impl::Destination_DiskFile_Impl(const wchar_t* path)
    : mFileHeaderText(std::string(YBase::UNICODE_BYTE_ORDER_MARK) + LOG_VERSION_LINE + "\n") {
  SetFilePath(path);
}

void Destination_DiskFile_Impl::LogMessage(const char* text, const MessageHeader& header) const {
  assert(text != nullptr);
  RecordText record;
  FormatMultiLineMessageText(header.GetMessageID(), header.ToString(), text, true, record);

  // If the thread were cancelled here, it would leave part of a record or keep the file's lock.
  const YBase::CancellationGuard cancellationGuard;
  const YSynch::CriticalSection::SmartLock lock(mLock);
  try {
    WriteMessage(record.View());
  } catch (const YBase::Message& failure) {
    mpFile = nullptr;
    mMissed.Begin(YBase::WideCharToUTF8(failure.GetMessage().c_str()), 1);
  }
}

void Destination_DiskFile_Impl::WriteMessage(std::string_view record) const {
  for (int attempt = 0; attempt < MAXIMUM_ATTEMPTS; ++attempt) {
    if (!mpFile && !ReopenFileIfDue()) return;
    const Outcome outcome = TryToWrite(record);
    if (outcome == Outcome::WRITTEN) return;
    if (outcome == Outcome::FILE_GONE) mpFile = nullptr;
  }
  ThrowRaceCondition();
}

Destination_DiskFile_Impl::Outcome Destination_DiskFile_Impl::TryToWrite(std::string_view record) const {
  YFileSystem::UpdateableFile& file = *mpFile;
  const YFileSystem::WriteableFile::WriteSmartLock fileLock(file);
  const YFileSystem::UpdateableFile::PathState state = file.QueryPath();
  if (!state.mIsThisFile) return Outcome::FILE_GONE;
  if (state.mSize >= mMaximumFileSize) {
    // With a maximum size of 0, rotating empty files would replace all backups by empty ones.
    if (state.mSize > 0) BackupFiles(mFilePath, mMaximumFileBackup).Rotate(file);
    return Outcome::NOT_YET_WRITTEN;
  }
  AppendRecord(file, state.mSize, record);
  return Outcome::WRITTEN;
}

void Destination_DiskFile_Impl::AppendRecord(YFileSystem::UpdateableFile& file, std::uint64_t size,
                                             std::string_view record) const {
  std::string_view before;
  // If the size is the one this destination left, no other process has written since, so the checks for
  // leftovers are skipped.
  if (size == 0 || size != mSizeAsLeft) {
    size = MendBeginning(file, size);
    if (size == 0) {
      before = mFileHeaderText;
    } else if (EndsInFragment(file, size)) {
      before = "\n";
    }
  }
  if (before.empty()) {
    file.Append(size, record);
  } else {
    file.Append(size, std::string(before).append(record));
  }
  mSizeAsLeft = size + before.size() + record.size();
}

/// Finishes what a killed writer left unfinished: a rotation, or a file head that was cut short. Returns the
/// size of the file afterwards.
std::uint64_t Destination_DiskFile_Impl::MendBeginning(YFileSystem::UpdateableFile& file,
                                                       std::uint64_t size) const {
  if (size > 0 && size < mFileHeaderText.size()) {
    std::string beginning(mFileHeaderText.size(), '\0');
    file.SetPosition(0);
    beginning.resize(file.Read(beginning.data(), beginning.size()));
    if (mFileHeaderText.starts_with(beginning)) {
      file.SetPosition(0);
      file.Truncate();
      size = 0;
    }
  }
  if (size == 0) SettleInterruptedRotation(file);
  return size;
}

void Destination_DiskFile_Impl::SettleInterruptedRotation(YFileSystem::UpdateableFile& file) const {
  try {
    BackupFiles(mFilePath, mMaximumFileBackup).SettleInterruptedRotation(file);
  } catch (const YBase::Message&) {
    // The copy keeps its records until the next rotation tries again. It may belong to a user whose files
    // this process cannot rename, and that must not keep it from writing to an empty file.
  }
}

bool Destination_DiskFile_Impl::EndsInFragment(YFileSystem::UpdateableFile& file, std::uint64_t size) const {
  char last = '\n';
  file.SetPosition(size - 1);
  file.Read(&last, 1);
  return last != '\n';
}

/// Reopens the closed file unless the retry period forbids it. Returns false if the message is dropped.
bool Destination_DiskFile_Impl::ReopenFileIfDue() const {
  if (!mMissed.IsRetryDue()) {
    mMissed.CountDropped();
    return false;
  }
  try {
    ReopenFile();
    return true;
  } catch (const YBase::Message&) {
    mMissed.RetryFailed();
    return false;
  }
}

void Destination_DiskFile_Impl::ReopenFile() const {
  mSizeAsLeft = 0;
  auto file = YFileSystem::OpenUpdateableFile(mFilePath.c_str(), YFileSystem::KEEP_WHAT_WAS_WRITTEN);
  if (!mMissed.IsEmpty()) {
    WriteMissedMessagesRecord(*file);
    mMissed.Clear();
  }
  // Only now, so that the file stays closed, and the count is kept, if anything before this fails. An open
  // file would take the next message before the missed ones are reported.
  mpFile = std::move(file);
}

void Destination_DiskFile_Impl::WriteMissedMessagesRecord(YFileSystem::UpdateableFile& file) const {
  // This changes the thread's own header.
  MessageHeader& header = *gModuleMainPtr->GetThreadContext()->GetMessageHeader();
  header.SetTimestampToNowLocal();
  header.SetLoggerName("Log");
  header.SetDispatcherName("Error");
  header.SetMessageID(0);
  const std::string record = header.ToString() + mMissed.Describe() + "\n";

  const YFileSystem::WriteableFile::WriteSmartLock fileLock(file);
  const YFileSystem::UpdateableFile::PathState state = file.QueryPath();
  if (!state.mIsThisFile) {
    throw YBase::ExceptionImpl<YBase::Message>(
        "YLog::Destination_DiskFile_Impl::ReopenFile: the file was replaced while it was being opened");
  }
  AppendRecord(file, state.mSize, record);
}

void Destination_DiskFile_Impl::ThrowRaceCondition() const {
  throw YBase::ExceptionImpl<YBase::Message>(
      ("YLog::Destination_DiskFile_Impl::WriteMessage: detected a race condition with '" +
       YBase::WideCharToUTF8(mFilePath.c_str()) + "'. Maximum file size is " +
       YBase::ToDecimalString(static_cast<long long>(mMaximumFileSize)) + " bytes.")
          .c_str());
}

void Destination_DiskFile_Impl::SetFilePath(const wchar_t* path) {
  assert(path != nullptr);
  const std::wstring newPath = YBase::EmptyIfNull(path);
  const YBase::CancellationGuard cancellationGuard;
  const YSynch::CriticalSection::SmartLock lock(mLock);
  if (newPath == mFilePath) return;
  mFilePath = newPath;
  mpFile = nullptr;
  mSizeAsLeft = 0;
  try {
    const std::wstring directory = YFileSystem::Path::GetDirname(mFilePath.c_str());
    if (!directory.empty() && !YFileSystem::Path::IsDirectory(directory.c_str())) {
      YFileSystem::Directory::Create(directory.c_str(), true);
    }
    mpFile = YFileSystem::OpenUpdateableFile(mFilePath.c_str(), YFileSystem::KEEP_WHAT_WAS_WRITTEN);
  } catch (const YBase::Message& failure) {
    mMissed.Begin(YBase::WideCharToUTF8(failure.GetMessage().c_str()), 0);
  }
}

YBase::ReturnWString Destination_DiskFile_Impl::GetFilePath() const {
  const YSynch::CriticalSection::SmartLock lock(mLock);
  return mFilePath;
}

void Destination_DiskFile_Impl::SetMaximumFileSize(unsigned long size) {
  const YSynch::CriticalSection::SmartLock lock(mLock);
  mMaximumFileSize = std::min(size, MAXIMUM_FILE_SIZE_LIMIT);
}

unsigned long Destination_DiskFile_Impl::GetMaximumFileSize() {
  const YSynch::CriticalSection::SmartLock lock(mLock);
  return mMaximumFileSize;
}

void Destination_DiskFile_Impl::SetMaximumFileBackup(unsigned long count) {
  const YSynch::CriticalSection::SmartLock lock(mLock);
  mMaximumFileBackup = std::min(count, MAXIMUM_FILE_BACKUP_LIMIT);
}

unsigned long Destination_DiskFile_Impl::GetMaximumFileBackup() {
  const YSynch::CriticalSection::SmartLock lock(mLock);
  return mMaximumFileBackup;
}

}  // namespace YLog

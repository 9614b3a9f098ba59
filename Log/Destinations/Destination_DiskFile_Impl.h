#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <YBase/SmartPtrI.h>
#include <YFileSystem/UpdateableFile.h>
#include <YLog/Destination_DiskFile.h>
#include <YSynch/CriticalSection.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "Destinations/Destination_Impl.h"
#include "Destinations/MissedMessages.h"

namespace YLog {

class Destination_DiskFile_Impl final : public Destination_Impl,
                                        public Destination_DiskFile,
                                        public YSynch::ReferenceCountedImpl<YSynch::AtomicLong> {
 public:
  /// As `SetFilePath`.
  explicit Destination_DiskFile_Impl(const wchar_t* path);

  using Destination_Impl::LogMessage;
  void LogMessage(const char* text, const MessageHeader& header) const override;

  void SetMaximumFileSize(unsigned long size) override;
  unsigned long GetMaximumFileSize() override;
  void SetMaximumFileBackup(unsigned long count) override;
  unsigned long GetMaximumFileBackup() override;
  YBase::ReturnWString GetFilePath() const override;

  /// Continues in the file at `path`, whose folder is created with all its parents. Does nothing if that is
  /// the path already.
  ///
  /// Failure: a file that cannot be opened is a failure like those of `LogMessage`, with no message missed
  /// yet; messages that were missed before are forgotten. If it can be opened, messages missed before stay
  /// counted and are reported when the file is next reopened.
  void SetFilePath(const wchar_t* path);

 private:
  enum class Outcome { WRITTEN, NOT_YET_WRITTEN, FILE_GONE };

  ~Destination_DiskFile_Impl() override = default;

  void WriteMessage(std::string_view record) const YSYNCH_REQUIRES(mLock);
  Outcome TryToWrite(std::string_view record) const YSYNCH_REQUIRES(mLock);
  void AppendRecord(YFileSystem::UpdateableFile& file, std::uint64_t size, std::string_view record) const
      YSYNCH_REQUIRES(mLock, file);
  std::uint64_t MendBeginning(YFileSystem::UpdateableFile& file, std::uint64_t size) const
      YSYNCH_REQUIRES(mLock, file);
  void SettleInterruptedRotation(YFileSystem::UpdateableFile& file) const YSYNCH_REQUIRES(mLock, file);
  bool EndsInFragment(YFileSystem::UpdateableFile& file, std::uint64_t size) const YSYNCH_REQUIRES(mLock);

  bool ReopenFileIfDue() const YSYNCH_REQUIRES(mLock);
  void ReopenFile() const YSYNCH_REQUIRES(mLock);
  void WriteMissedMessagesRecord(YFileSystem::UpdateableFile& file) const YSYNCH_REQUIRES(mLock);
  [[noreturn]] void ThrowRaceCondition() const YSYNCH_REQUIRES(mLock);

  const std::string mFileHeaderText;
  mutable YSynch::CriticalSection mLock{YSynch::LOCK_STACK_CATEGORY_OBJECT};

  std::wstring mFilePath YSYNCH_GUARDED_BY(mLock);
  // Null while the file is closed after a failure.
  mutable YBase::SmartPtrI<YFileSystem::UpdateableFile> mpFile YSYNCH_GUARDED_BY(mLock);
  // The file's size when this destination last wrote to it: another size means that another writer has
  // written, too.
  mutable std::uint64_t mSizeAsLeft YSYNCH_GUARDED_BY(mLock) = 0;
  mutable MissedMessages mMissed YSYNCH_GUARDED_BY(mLock);
  unsigned long mMaximumFileBackup YSYNCH_GUARDED_BY(mLock) = 1;
  unsigned long mMaximumFileSize YSYNCH_GUARDED_BY(mLock) = 2000000;
};

}  // namespace YLog

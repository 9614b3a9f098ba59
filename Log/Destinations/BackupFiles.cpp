#include "Destinations/BackupFiles.h"

#include <climits>
#include <cstring>
#include <optional>
#include <string>

#include <YBase/ExceptionImpl.h>
#include <YBase/Message.h>
#include <YBase/TextConversion.h>
#include <YFileSystem/File.h>
#include <YFileSystem/FileCopy.h>
#include <YFileSystem/Path.h>

namespace YLog {

void BackupFiles::Rotate(YFileSystem::UpdateableFile& log) const {
  SettleInterruptedRotation(log);
  auto copy = YFileSystem::FileCopy::Create(CopyPath().c_str());
  if (!copy) return;
  // Before the copy is filled, because on a full disk it needs the space of the oldest backup.
  MakeRoom();
  if (!copy->Fill(log)) {
    throw YBase::ExceptionImpl<YBase::Message>(
        ("YLog::Destination_DiskFile_Impl::WriteMessage: ::write failed for file " +
         YBase::WideCharToUTF8(BackupPath(0).c_str()) + ".")
            .c_str());
  }
  copy->Complete(log);
  // If the log was moved away, the process that has made a new one may have deleted the copy.
  if (!log.QueryPath().mIsThisFile || !copy->HasItsName()) return;
  log.SetPosition(0);
  log.Truncate();
  copy->Keep();
  copy->MoveTo(BackupPath(0).c_str());
}

void BackupFiles::SettleInterruptedRotation(YFileSystem::UpdateableFile& log) const {
  auto copy = YFileSystem::FileCopy::Find(CopyPath().c_str(), log);
  if (!copy) return;
  if (!copy->IsComplete() || copy->IsBeginningOf(log)) {
    copy->Delete();
  } else {
    MakeRoom();
    copy->MoveTo(BackupPath(0).c_str());
  }
}

/// Deletes the oldest backup if every number is taken, and moves the others up so that number 0 is free.
void BackupFiles::MakeRoom() const {
  const unsigned long last = GetLastNumber();
  unsigned long free = 0;
  while (free < last && IsTaken(free)) ++free;
  if (IsTaken(free)) YFileSystem::File::Delete(BackupPath(free).c_str());
  for (; free > 0; --free) {
    YFileSystem::File::Move(BackupPath(free - 1).c_str(), BackupPath(free).c_str());
  }
}

bool BackupFiles::IsTaken(unsigned long number) const {
  const std::wstring path = BackupPath(number);
  const std::optional<YFileSystem::FileFacts> facts = YFileSystem::File::Query(path.c_str());
  if (!facts || facts->mType != YFileSystem::FileFacts::Type::DIRECTORY) return facts.has_value();
  throw YBase::ExceptionImpl<YBase::Message>(
      ("YLog::BackupFiles::MakeRoom: '" + YBase::WideCharToUTF8(path.c_str()) + "' is a directory").c_str());
}

/// The highest number that a backup may have. Names from ".bak100" on are one byte longer than ".bak00", and
/// may not fit.
unsigned long BackupFiles::GetLastNumber() const {
  constexpr unsigned long LAST_OF_TWO_DIGITS = 99;
  const unsigned long last = mCount > 0 ? mCount - 1 : 0;
  if (last <= LAST_OF_TWO_DIGITS) return last;
  const std::string longest = YBase::WideCharToUTF8(BackupPath(last).c_str());
  const bool fits = std::strlen(YFileSystem::Path::GetBasename(longest.c_str())) <= NAME_MAX;
  return fits ? last : LAST_OF_TWO_DIGITS;
}

std::wstring BackupFiles::BackupPath(unsigned long number) const {
  // Not `swprintf`: it takes a lock of the C library, which a child of a fork may inherit locked.
  const std::string digits = std::to_string(number);
  std::wstring path = mPath + L".bak";
  if (digits.size() < 2) path += L'0';
  return path.append(digits.begin(), digits.end());
}

std::wstring BackupFiles::CopyPath() const {
  return mPath + L".part";
}

}  // namespace YLog

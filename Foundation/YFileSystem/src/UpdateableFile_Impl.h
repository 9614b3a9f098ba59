#pragma once

#include <string>

#include <YBase/Descriptor.h>
#include <YFileSystem/FileFacts.h>
#include <YFileSystem/UpdateableFile.h>
#include <YSynch/ForkParticipant.h>
#include <YSynch/ReferenceCountedImpl.h>

#include "FileSizeLimit.h"

namespace YFileSystem {

class UpdateableFile_Impl final : public UpdateableFile,
                                  public YSynch::ReferenceCountedImpl<YSynch::AtomicLong>,
                                  private YSynch::ForkParticipant {
 public:
  /// Opens the file at the path, in UTF-8; see `OpenUpdateableFile`.
  explicit UpdateableFile_Impl(std::string path);

  void Append(std::uint64_t size, std::string_view text) override;
  PathState QueryPath() override;
  FileFacts Query() override;
  void SetPosition(std::uint64_t position) noexcept override { mPosition = position; }
  std::size_t Read(char* buffer, std::size_t count) override;
  void Truncate() override;

 private:
  ~UpdateableFile_Impl() override;

  void LockForWriting() override;
  void UnlockForWriting() noexcept override;
  void AfterForkInChild() noexcept override;

  void Open();
  void OpenUnlessOpen();
  int Write(std::string_view& rest) const noexcept;
  int TruncateTo(std::uint64_t size) const noexcept;

  const std::string mPath;
  // None in a child of a fork that has not needed the file yet.
  YBase::Descriptor mDescriptor;
  FileIdentity mIdentity;
  std::uint64_t mPosition = 0;
  FileSizeLimit mFileSizeLimit;
};

}  // namespace YFileSystem

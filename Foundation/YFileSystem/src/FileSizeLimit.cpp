#include "FileSizeLimit.h"

#include "FileOperations.h"

namespace YFileSystem {

void FileSizeLimit::Refresh() noexcept {
  FileOperations& operations = FileOperations::GetCurrent();
  mReadAt = operations.GetCoarseTime();
  mLimit = operations.GetFileSizeLimit();
}

bool FileSizeLimit::IsPassedBy(std::uint64_t size) noexcept {
  if (FileOperations::GetCurrent().GetCoarseTime() - mReadAt >= std::chrono::seconds(1)) Refresh();
  return size > mLimit;
}

}  // namespace YFileSystem

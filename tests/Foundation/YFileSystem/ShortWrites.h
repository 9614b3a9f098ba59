#pragma once

#include <algorithm>
#include <cstddef>

#include "support/FileOperationsWrapper.h"

/// A file system that takes few bytes at a time; the current one as long as it exists.
class ShortWrites final : public Support::FileOperationsWrapper {
 public:
  explicit ShortWrites(std::size_t limit) : mLimit(limit) {}

  ssize_t Write(int descriptor, const iovec* pieces, int) noexcept override {
    ++mWrites;
    const iovec first{pieces->iov_base, std::min(pieces->iov_len, mLimit)};
    return mLimit != 0 ? FileOperationsWrapper::Write(descriptor, &first, 1) : 0;
  }

  int mWrites = 0;

 private:
  const std::size_t mLimit;
  const Support::ScopedFileOperations mScope{*this};
};

#pragma once

#include <algorithm>
#include <cstddef>

#include "support/FileOperationsWrapper.h"

/// A file system that writes few bytes at a time. It is the current one as long as it exists.
class ShortWrites final : public Support::FileOperationsWrapper {
 public:
  explicit ShortWrites(std::size_t limit) : mLimit(limit) {}

  ssize_t Write(int descriptor, const char* text, std::size_t count) noexcept override {
    ++mWrites;
    return mLimit != 0 ? FileOperationsWrapper::Write(descriptor, text, std::min(count, mLimit)) : 0;
  }

  int mWrites = 0;

 private:
  const std::size_t mLimit;
  const Support::ScopedFileOperations mScope{*this};
};

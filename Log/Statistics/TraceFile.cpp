#include "Statistics/TraceFile.h"

#include <utility>

namespace YLog {

TraceFile::TraceFile(const std::string& path) noexcept : mpFile(std::fopen(path.c_str(), "we")) {}

TraceFile::~TraceFile() {
  if (mpFile != nullptr) std::fclose(mpFile);
}

bool TraceFile::Close() noexcept {
  const bool written = std::ferror(mpFile) == 0;
  const bool flushed = std::fclose(std::exchange(mpFile, nullptr)) == 0;
  return written && flushed;
}

}  // namespace YLog

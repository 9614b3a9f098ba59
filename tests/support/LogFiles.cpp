#include "support/LogFiles.h"

#include <algorithm>
#include <cstdio>

#include <YLog/MessageHeader.h>

#include "support/ReadFile.h"

namespace Support {

namespace {

const std::string HEAD = "\xEF\xBB\xBF# Vellatorquine Log version 2.0\n";

std::vector<std::filesystem::path> OldestFirst(const std::filesystem::path& path) {
  std::vector<std::filesystem::path> files{path};
  for (int number = 0; number < 256; ++number) {
    char suffix[16];
    std::snprintf(suffix, sizeof suffix, ".bak%02d", number);
    const std::filesystem::path backup = path.string() + suffix;
    if (std::filesystem::exists(backup)) files.push_back(backup);
  }
  std::reverse(files.begin(), files.end());
  return files;
}

}  // namespace

LogFiles ReadLogFiles(const std::filesystem::path& path) {
  LogFiles result;
  const std::vector<std::filesystem::path> files = OldestFirst(path);
  result.mBackups = files.size() - 1;
  for (const std::filesystem::path& file : files) {
    std::string content = ReadFile(file);
    result.mLargestFile = std::max(result.mLargestFile, content.size());
    if (content.starts_with(HEAD)) {
      content.erase(0, HEAD.size());
    } else {
      ++result.mFilesWithoutHead;
    }
    for (std::string& line : Lines(content)) result.mLines.push_back(std::move(line));
  }
  return result;
}

std::string TextOf(const std::string& line) {
  static const YBase::SmartPtrI<YLog::MessageHeader> sHeader = YLog::CreateMessageHeader();
  const unsigned count = sHeader->FromString(line.c_str());
  return count > 0 && count < line.size() ? line.substr(count + 1) : "";
}

}  // namespace Support

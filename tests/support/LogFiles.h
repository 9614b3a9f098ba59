#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace Support {

/// A log file and its backups, read back.
struct LogFiles {
  /// The lines after the head of each file, oldest file first, including a last line without a line feed.
  std::vector<std::string> mLines;
  std::size_t mBackups = 0;
  std::size_t mLargestFile = 0;
  /// How many files do not begin with the byte order mark and the version line.
  std::size_t mFilesWithoutHead = 0;
};

/// Reads the file at `path` and every backup beside it.
LogFiles ReadLogFiles(const std::filesystem::path& path);

/// The text after a record's header; empty if the line does not begin with one.
std::string TextOf(const std::string& line);

}  // namespace Support

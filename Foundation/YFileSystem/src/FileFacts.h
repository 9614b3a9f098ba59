#pragma once

#include <cstdint>

namespace YFileSystem {

/// What tells one file from every other, whatever names it has.
struct FileIdentity {
  std::uint64_t mDevice = 0;
  std::uint64_t mNumber = 0;

  bool operator==(const FileIdentity&) const = default;
};

/// What one question to the file system answers.
struct FileFacts {
  enum class Type { REGULAR, DIRECTORY, OTHER };

  Type mType = Type::OTHER;
  FileIdentity mIdentity;
  std::uint64_t mSize = 0;  ///< Bytes.
};

}  // namespace YFileSystem

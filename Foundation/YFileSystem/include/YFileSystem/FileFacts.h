#pragma once

#include <cstdint>

namespace YFileSystem {

/// Distinguishes a file from every other, whatever names it has.
struct FileIdentity {
  std::uint64_t mDevice = 0;
  std::uint64_t mNumber = 0;

  bool operator==(const FileIdentity&) const = default;
};

/// What one query of the file system returns.
struct FileFacts {
  enum class Type { REGULAR, DIRECTORY, OTHER };

  Type mType = Type::OTHER;
  FileIdentity mIdentity;
  std::uint64_t mSize = 0;  ///< Bytes.
  unsigned mPermissions =
      0;  ///< The nine bits of POSIX: read, write and execute, for owner, group and others.
  unsigned mOwner = 0;
  unsigned mGroup = 0;
};

}  // namespace YFileSystem

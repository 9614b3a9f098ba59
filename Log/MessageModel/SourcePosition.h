#pragma once

#include <string>

namespace YLog {

/// The last group of a header's text line, such as "[engine_main:Run at line:42]".
struct SourcePosition {
  std::string fileName;
  std::string funcName;
  int lineNumber = 0;

  /// Reads the group at the beginning of `text` as the scan format "[%255[^:]:%127s at line:%d]" does, and
  /// returns how many characters belong to it: those up to the first "]", wherever that is.
  ///
  /// Returns 0, and the object is unchanged, if there is no such group, if it is cut off before its "]", or
  /// if the number is too large.
  unsigned FromString(const char* text);
};

}  // namespace YLog

#pragma once

#include <cassert>

namespace YLog {

/// For texts that must not be null: debug builds refuse null, other builds treat it as empty.
inline const char* NotNull(const char* text) {
  assert(text != nullptr);
  return text != nullptr ? text : "";
}

}  // namespace YLog

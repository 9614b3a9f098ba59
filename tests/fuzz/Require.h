#pragma once

#include <cstdio>
#include <cstdlib>

namespace Fuzz {

/// Ends the program if a property does not hold, so that libFuzzer keeps the input.
inline void Require(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", property);
  std::abort();
}

}  // namespace Fuzz

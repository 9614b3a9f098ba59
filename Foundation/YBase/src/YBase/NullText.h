#pragma once

#include <cassert>

namespace YBase {

/// For texts that may be null, which then are empty.
template <class Character>
const Character* EmptyIfNull(const Character* text) noexcept {
  static constexpr Character EMPTY{};
  return text != nullptr ? text : &EMPTY;
}

/// For texts that must not be null: debug builds refuse null, others take it for empty.
inline const char* NotNull(const char* text) noexcept {
  assert(text != nullptr);
  return EmptyIfNull(text);
}

}  // namespace YBase

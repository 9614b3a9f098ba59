#pragma once

namespace Support {

/// Languages by their identifiers.
inline constexpr unsigned short NEUTRAL = 0;
inline constexpr unsigned short GERMAN = 0x0407;
inline constexpr unsigned short FRENCH = 0x040C;

}  // namespace Support

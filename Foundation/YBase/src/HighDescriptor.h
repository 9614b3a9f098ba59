#pragma once

namespace YBase {

/// The first descriptor after standard input, output and error.
inline constexpr int FIRST_HIGH_DESCRIPTOR = 3;

/// Moves a descriptor below that number to a higher one, which started programs do not inherit, and closes
/// the low one. Returns any other descriptor as it is.
///
/// Failure: returns -1 and sets `errno`.
int MakeHigh(int descriptor) noexcept;

}  // namespace YBase

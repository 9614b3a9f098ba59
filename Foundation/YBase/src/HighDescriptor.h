#pragma once

namespace YBase {

/// The first number that is not one of standard input, output and error.
inline constexpr int FIRST_HIGH_DESCRIPTOR = 3;

/// What such a low number leads to, by a higher one, which a program that is started does not inherit. The
/// low one is closed. Everything else is returned as it is.
///
/// Failure: -1 is returned, and `errno` says why.
int MakeHigh(int descriptor) noexcept;

}  // namespace YBase

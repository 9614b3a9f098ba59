#pragma once

#include <cstddef>
#include <string_view>

namespace YLog {

/// The position of the first double quote at or after `start` without a backslash just before it, or
/// `std::string_view::npos`. A backslash before `start` does not count, and a backslash is not itself escaped
/// by another.
std::size_t hFindFirstDoubleQuote(std::string_view text, std::size_t start) noexcept;

}  // namespace YLog

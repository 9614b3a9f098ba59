#pragma once

#include <cstddef>
#include <string_view>

namespace YLog {

/// Where the first double quote at or after `start` stands that has no backslash just before it, or
/// `std::string_view::npos`. A backslash before `start` does not count, and neither does it matter what
/// stands before a backslash.
std::size_t hFindFirstDoubleQuote(std::string_view text, std::size_t start) noexcept;

}  // namespace YLog

#pragma once

#include <cstddef>
#include <set>
#include <string_view>

namespace YResource {

/// Where a template has an argument: "%1".
struct Placeholder {
  /// Of the argument, from 1 on; 0 for a percent sign that begins no placeholder and is shown as it is.
  std::size_t number;
  /// How many characters it has.
  std::size_t length;
};

/// Reads the placeholder that the percent sign at the beginning of `rest` begins. \pre `rest` does not begin
/// with "%%".
Placeholder ReadPlaceholder(std::string_view rest) noexcept;

/// The numbers of all placeholders of a template.
std::set<std::size_t> FindPlaceholders(std::string_view messageTemplate);

}  // namespace YResource

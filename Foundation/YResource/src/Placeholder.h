#pragma once

#include <cstddef>
#include <set>
#include <string_view>

namespace YResource {

/// A placeholder of a template, such as "%1".
struct Placeholder {
  /// The number of the argument, from 1 on. 0 for a percent sign that does not begin a placeholder and is
  /// shown as it is.
  std::size_t number;
  /// The number of its characters.
  std::size_t length;
};

/// Reads the placeholder at the beginning of `rest`, which is a percent sign. \pre `rest` does not begin with
/// "%%".
Placeholder ReadPlaceholder(std::string_view rest) noexcept;

/// The numbers of all placeholders of a template.
std::set<std::size_t> FindPlaceholders(std::string_view messageTemplate);

}  // namespace YResource

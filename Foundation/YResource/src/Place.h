#pragma once

#include <cstddef>
#include <set>
#include <string_view>

namespace YResource {

/// A place for an argument in the text of a template.
struct Place {
  /// Of the argument, from 1 on; 0 for a percent sign that begins no place and stands as written.
  std::size_t number;
  /// How many characters the place takes.
  std::size_t length;
};

/// Reads the place that the percent sign at the beginning of `rest` begins; "%%" is none.
Place ReadPlace(std::string_view rest) noexcept;

/// The numbers of all places of a template.
std::set<std::size_t> FindPlaces(std::string_view messageTemplate);

}  // namespace YResource

#include "Place.h"

#include <algorithm>
#include <charconv>

namespace YResource {

Place ReadPlace(std::string_view rest) noexcept {
  // A number too large for the variable is read to its end all the same, and stays 0.
  std::size_t number = 0;
  const char* const end = std::from_chars(rest.data() + 1, rest.data() + rest.size(), number).ptr;
  return {number, static_cast<std::size_t>(end - rest.data())};
}

std::set<std::size_t> FindPlaces(std::string_view messageTemplate) {
  std::set<std::size_t> numbers;
  while (true) {
    messageTemplate.remove_prefix(std::min(messageTemplate.find('%'), messageTemplate.size()));
    if (messageTemplate.empty()) return numbers;
    const Place place = messageTemplate.starts_with("%%") ? Place{0, 2} : ReadPlace(messageTemplate);
    if (place.number != 0) numbers.insert(place.number);
    messageTemplate.remove_prefix(place.length);
  }
}

}  // namespace YResource

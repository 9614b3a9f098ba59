#include "Placeholder.h"

#include <algorithm>
#include <charconv>

namespace YResource {

Placeholder ReadPlaceholder(std::string_view rest) noexcept {
  // A number that is too large is read to its end nevertheless, and the variable stays 0.
  std::size_t number = 0;
  const char* const end = std::from_chars(rest.data() + 1, rest.data() + rest.size(), number).ptr;
  return {number, static_cast<std::size_t>(end - rest.data())};
}

std::set<std::size_t> FindPlaceholders(std::string_view messageTemplate) {
  std::set<std::size_t> numbers;
  while (true) {
    messageTemplate.remove_prefix(std::min(messageTemplate.find('%'), messageTemplate.size()));
    if (messageTemplate.empty()) return numbers;
    const Placeholder placeholder =
        messageTemplate.starts_with("%%") ? Placeholder{0, 2} : ReadPlaceholder(messageTemplate);
    if (placeholder.number != 0) numbers.insert(placeholder.number);
    messageTemplate.remove_prefix(placeholder.length);
  }
}

}  // namespace YResource

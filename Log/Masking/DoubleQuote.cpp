#include "Masking/DoubleQuote.h"

namespace YLog {

// Searches for quotes and looks back from each. Searching for quotes and for escaped quotes separately would
// scan the text again for each quote if the next escaped one is far away.
std::size_t hFindFirstDoubleQuote(std::string_view text, std::size_t start) noexcept {
  std::size_t quote = text.find('"', start);
  while (quote != std::string_view::npos && quote > start && text[quote - 1] == '\\') {
    start = quote + 1;
    quote = text.find('"', start);
  }
  return quote;
}

}  // namespace YLog

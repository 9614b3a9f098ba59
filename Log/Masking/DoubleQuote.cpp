#include "Masking/DoubleQuote.h"

namespace YLog {

// One search for quotes with a look back, not two searches side by side: where the text holds many quotes and
// the next escaped one is far away, each of them would look all the way for it.
std::size_t hFindFirstDoubleQuote(std::string_view text, std::size_t start) noexcept {
  std::size_t quote = text.find('"', start);
  while (quote != std::string_view::npos && quote > start && text[quote - 1] == '\\') {
    start = quote + 1;
    quote = text.find('"', start);
  }
  return quote;
}

}  // namespace YLog

#include "MaskingReference.h"

#include <deque>
#include <utility>

namespace Support {

namespace {

constexpr std::size_t NONE = std::string::npos;

using Positions = std::deque<std::pair<std::size_t, std::size_t>>;

std::string ReplaceFromTheLast(std::string text, const Positions& positions, const std::string& replacement) {
  for (auto position = positions.rbegin(); position != positions.rend(); ++position) {
    text.replace(position->first, position->second - position->first, replacement);
  }
  return text;
}

}  // namespace

std::size_t FindFirstDoubleQuoteSlowly(const std::string& text, std::size_t start) {
  for (std::size_t position = start;;) {
    const std::size_t escaped = text.find("\\\"", position);
    const std::size_t quote = text.find('"', position);
    if (escaped == NONE || quote < escaped) return quote;
    position = escaped + 2;
  }
}

std::string MaskAttributeSlowly(std::string text, const std::string& tagName,
                                const std::string& replacement) {
  const std::string pattern = " " + tagName + "=\"";
  Positions positions;
  for (std::size_t offset = 0;;) {
    const std::size_t name = text.find(pattern, offset);
    if (name == NONE) break;
    const std::size_t start = name + pattern.size();
    const std::size_t end = text.find('"', start);
    if (end == NONE) break;
    positions.emplace_back(start, end);
    offset = end + 1;
  }
  return ReplaceFromTheLast(std::move(text), positions, replacement);
}

std::string MaskHTTPSlowly(std::string text, int passes) {
  for (; passes > 0; --passes) {
    const std::string pattern = "\"password\"";
    Positions positions;
    for (std::size_t offset = 0;;) {
      const std::size_t name = text.find(pattern, offset);
      if (name == NONE) break;
      const std::size_t colon = text.find(':', name + pattern.size());
      if (colon == NONE) break;
      const std::size_t openingQuote = text.find('"', colon);
      if (openingQuote == NONE) break;
      const std::size_t closingQuote = FindFirstDoubleQuoteSlowly(text, openingQuote + 1);
      if (closingQuote == NONE) break;
      positions.emplace_back(openingQuote + 1, closingQuote);
      offset = closingQuote + 1;
    }
    text = ReplaceFromTheLast(std::move(text), positions, "***");
  }
  return text;
}

}  // namespace Support

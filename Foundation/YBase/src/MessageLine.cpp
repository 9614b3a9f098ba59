#include "MessageLine.h"

#include <YBase/Message.h>

#include <algorithm>

namespace YBase {

void AppendMessageLine(std::string& text, std::string_view line, std::size_t level) {
  // Without a bound the text of a chain of messages would grow with the square of its length.
  constexpr std::size_t MAXIMUM_INDENTED_LEVEL = 32;
  if (line.empty()) return;
  if (!text.empty()) text += '\n';
  text.append(2 * std::min(level, MAXIMUM_INDENTED_LEVEL), ' ');
  text += line;
}

std::string FormatDomainAndID(const Message& message) {
  return std::to_string(message.GetDomain()) + '/' + std::to_string(message.GetID());
}

}  // namespace YBase

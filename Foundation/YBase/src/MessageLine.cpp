#include "MessageLine.h"

#include <YBase/Message.h>

#include <algorithm>

namespace YBase {

void AppendMessageLine(std::string& text, std::string_view line, std::size_t level) {
  // Without a bound the text of a chain of messages would grow with the square of its length.
  constexpr std::size_t MAXIMUM_INDENTED_LEVEL = 32;
  constexpr std::string_view LINE_BREAKS = "\r\n";
  if (line.empty()) return;
  if (!text.empty()) text += '\n';
  const std::size_t indentation = 2 * std::min(level, MAXIMUM_INDENTED_LEVEL);
  // A text of several lines keeps its breaks, and stands as a whole beneath what it belongs to.
  while (!line.empty()) {
    // Not where the text begins with a break: a line of blanks alone would not be dropped as an empty one is.
    if (LINE_BREAKS.find(line.front()) == std::string_view::npos) text.append(indentation, ' ');
    const std::size_t nextLine = line.find_first_not_of(LINE_BREAKS, line.find_first_of(LINE_BREAKS));
    text += line.substr(0, nextLine);
    line.remove_prefix(std::min(nextLine, line.size()));
  }
}

std::string FormatDomainAndID(const Message& message) {
  return std::to_string(message.GetDomain()) + '/' + std::to_string(message.GetID());
}

}  // namespace YBase

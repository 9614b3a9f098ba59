#include "MessageLine.h"

#include <YBase/Message.h>

#include <algorithm>

namespace YBase {

namespace {

bool IsLineBreak(char character) noexcept {
  return character == '\n' || character == '\r';
}

}  // namespace

void AppendMessageLine(std::string& text, std::string_view line, std::size_t level) {
  // Without a limit, the text of a chain of messages would grow with the square of its length.
  constexpr std::size_t MAXIMUM_INDENTED_LEVEL = 32;
  if (line.empty()) return;
  if (!text.empty()) text += '\n';
  const std::size_t indentation = 2 * std::min(level, MAXIMUM_INDENTED_LEVEL);
  // A text of several lines keeps its line breaks and is indented as a whole.
  const char* const end = line.data() + line.size();
  for (const char* begin = line.data(); begin != end;) {
    // Not if the text begins with a line break: a line of nothing but blanks would not be dropped as an empty
    // one is.
    if (!IsLineBreak(*begin)) text.append(indentation, ' ');
    const char* const breaks = std::find_if(begin, end, IsLineBreak);
    const char* const next = std::find_if_not(breaks, end, IsLineBreak);
    text.append(begin, next);
    begin = next;
  }
}

std::string FormatDomainAndID(const Message& message) {
  return std::to_string(message.GetDomain()) + '/' + std::to_string(message.GetID());
}

}  // namespace YBase

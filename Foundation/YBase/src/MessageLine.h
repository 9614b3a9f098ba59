#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace YBase {

class Message;

/// Appends the text of a message on a new line, indented by its level. Appends nothing if the text is empty.
void AppendMessageLine(std::string& text, std::string_view line, std::size_t level);

/// "12/345".
std::string FormatDomainAndID(const Message& message);

}  // namespace YBase

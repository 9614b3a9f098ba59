#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace YBase {

class Message;

/// Appends a line for a message so many levels below the root; none where `line` is empty.
void AppendMessageLine(std::string& text, std::string_view line, std::size_t level);

/// "12/345".
std::string FormatDomainAndID(const Message& message);

}  // namespace YBase

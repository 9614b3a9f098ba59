#pragma once

#include <string>
#include <string_view>

namespace Support {

/// The text as one word of a shell command, whatever its characters.
std::string ShellWord(std::string_view text);

}  // namespace Support

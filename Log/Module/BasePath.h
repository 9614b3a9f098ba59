#pragma once

#include <string>
#include <string_view>

namespace YLog {

/// The data folder of the sandbox container that the program belongs to, below the home folder as it stands.
/// UTF-8.
std::string GetContainerPath(const std::string& home, std::string_view executablePath);

}  // namespace YLog

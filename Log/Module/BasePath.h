#pragma once

#include <string>
#include <string_view>

namespace YLog {

/// The data folder of the program's sandbox container, below the home folder. UTF-8.
std::string GetContainerPath(const std::string& home, std::string_view executablePath);

}  // namespace YLog

#pragma once

#include <cstddef>
#include <string>

namespace Support {

// A slow reference implementation of masking: the library must return the same for any text.

std::size_t FindFirstDoubleQuoteSlowly(const std::string& text, std::size_t start);
std::string MaskAttributeSlowly(std::string text, const std::string& tagName, const std::string& replacement);
std::string MaskHTTPSlowly(std::string text, int passes = 1);

}  // namespace Support

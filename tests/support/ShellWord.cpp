#include "support/ShellWord.h"

namespace Support {

std::string ShellWord(std::string_view text) {
  std::string word = "'";
  for (const char character : text) {
    // A quote ends the quoted text, is added by itself, and begins it again.
    if (character == '\'') {
      word += R"('\'')";
    } else {
      word += character;
    }
  }
  return word += '\'';
}

}  // namespace Support

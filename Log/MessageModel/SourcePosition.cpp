#include "MessageModel/SourcePosition.h"

#include <charconv>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <system_error>

namespace YLog {

namespace {

constexpr std::size_t MAX_FILE_NAME = 255;
constexpr std::size_t MAX_FUNC_NAME = 127;
// What a scan format treats as white space in the C locale, whatever locale the host has set.
constexpr const char* WHITE_SPACE = " \t\n\v\f\r";

/// Reads a text from its beginning. Each operation is one directive of a scan format: it moves past what it
/// has read, or returns false.
class Scanner {
 public:
  explicit Scanner(const char* text) : mpPosition(text) {}

  const char* Position() const { return mpPosition; }

  bool ReadLiteral(std::string_view literal) {
    if (std::strncmp(mpPosition, literal.data(), literal.size()) != 0) return false;
    mpPosition += literal.size();
    return true;
  }

  bool SkipWhiteSpace() {
    mpPosition += std::strspn(mpPosition, WHITE_SPACE);
    return true;
  }

  /// At least one character, none of them a delimiter. A longer name is cut; its rest is read by the next
  /// directive.
  bool ReadName(const char* delimiters, std::size_t maxLength, std::string_view& name) {
    std::size_t length = 0;
    while (length < maxLength && std::strchr(delimiters, mpPosition[length]) == nullptr) ++length;
    name = {mpPosition, length};
    mpPosition += length;
    return length > 0;
  }

  bool ReadInt(int& number) {
    SkipWhiteSpace();
    const bool plus = *mpPosition == '+';
    const char* digits = mpPosition + (plus || *mpPosition == '-' ? 1 : 0);
    const std::size_t count = std::strspn(digits, "0123456789");
    const char* first = plus ? digits : mpPosition;
    const auto [end, error] = std::from_chars(first, digits + count, number);
    mpPosition = end;
    return error == std::errc();
  }

 private:
  const char* mpPosition;
};

}  // namespace

unsigned SourcePosition::FromString(const char* text) {
  Scanner scanner(text);
  std::string_view file;
  std::string_view function;
  int line = 0;
  const bool matches = scanner.ReadLiteral("[") && scanner.ReadName(":", MAX_FILE_NAME, file) &&
                       scanner.ReadLiteral(":") && scanner.SkipWhiteSpace() &&
                       scanner.ReadName(WHITE_SPACE, MAX_FUNC_NAME, function) && scanner.SkipWhiteSpace() &&
                       scanner.ReadLiteral("at") && scanner.SkipWhiteSpace() &&
                       scanner.ReadLiteral("line:") && scanner.ReadInt(line);
  if (!matches || std::strchr(scanner.Position(), ']') == nullptr) return 0;
  fileName = file;
  funcName = function;
  lineNumber = line;
  return static_cast<unsigned>(std::strchr(text, ']') + 1 - text);
}

}  // namespace YLog

#include "CatalogueFaults.h"

#include <YBase/NumberText.h>
#include <utf8.h>

#include <algorithm>
#include <tuple>

namespace YResource {

namespace {

/// Control characters, the separators of lines and paragraphs, and marks of the direction of writing.
bool IsToBeEscaped(unsigned character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x061C ||
         character == 0x200E || character == 0x200F || (character >= 0x2028 && character <= 0x202E) ||
         (character >= 0x2066 && character <= 0x2069);
}

void AppendEscape(std::string& text, char kind, int digits, unsigned value) {
  char storage[16];
  text += '\\';
  text += kind;
  text += YBase::ToHexText(storage, value, digits);
}

std::string Escape(const std::string& text) {
  std::string escaped;
  const char* next = text.data();
  const char* const end = next + text.size();
  while (true) {
    const char* const invalid = utf8::find_invalid(next, end);
    while (next != invalid) {
      const char* const begin = next;
      const unsigned character = utf8::unchecked::next(next);
      if (IsToBeEscaped(character)) {
        AppendEscape(escaped, 'u', 4, character);
      } else {
        escaped.append(begin, next);
      }
    }
    if (next == end) return escaped;
    AppendEscape(escaped, 'x', 2, static_cast<unsigned char>(*next++));
  }
}

}  // namespace

std::vector<YBase::ReturnString> CatalogueFaults::Take() {
  // The faults of a line stay in the order in which they were found.
  std::stable_sort(mFaults.begin(), mFaults.end(), [](const Fault& left, const Fault& right) {
    return std::tie(left.path, left.line) < std::tie(right.path, right.line);
  });
  std::vector<YBase::ReturnString> lines;
  lines.reserve(mFaults.size());
  for (const Fault& fault : mFaults) {
    const std::string place = fault.line != 0 ? fault.path + ':' + std::to_string(fault.line) : fault.path;
    lines.push_back(Escape(place + ": " + fault.reason));
  }
  return lines;
}

}  // namespace YResource

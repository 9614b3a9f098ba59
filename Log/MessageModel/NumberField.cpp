#include "MessageModel/NumberField.h"

#include <algorithm>
#include <iterator>

namespace YLog {

void AssignHex(std::string& text, unsigned value, std::size_t minDigits) {
  char digits[sizeof(value) * 2];
  char* first = std::end(digits);
  for (; value != 0; value >>= 4) *--first = "0123456789ABCDEF"[value & 0xFU];
  const auto count = static_cast<std::size_t>(std::end(digits) - first);
  text.assign(std::max(count, minDigits) - count, '0').append(first, count);
}

}  // namespace YLog

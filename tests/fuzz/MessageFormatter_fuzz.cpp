#include <YResource/MessageFormatter.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.h"

// The first byte is the number of arguments, the rest is the template.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  YResource::MessageFormatter formatter;
  for (unsigned i = 0; i < data[0]; ++i) formatter << i;

  YResource::FormattedText formatted;
  formatter.Format(text, formatted);
  if (text.find('%') == std::string_view::npos)
    Fuzz::Require(formatted.View() == text, "plain text stays as it is");

  YResource::FormattedText again;
  formatter.Format("%1", again);
  Fuzz::Require(again.View() == "%1", "formatting consumes the arguments");
  return 0;
}

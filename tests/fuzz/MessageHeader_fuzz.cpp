#include <YLog/MessageHeader.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "Require.h"

namespace {

void TextLineReadsBackAsItself(const YLog::MessageHeader& header) {
  const std::string text = header.ToString();
  const auto again = YLog::CreateMessageHeader();
  Fuzz::Require(again->FromString(text.c_str()) == text.size(), "a text line is read to its end");
  Fuzz::Require(again->ToString() == text, "a text line that was read is written unchanged");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string line(reinterpret_cast<const char*>(data), size);
  const auto header = YLog::CreateMessageHeader();
  const std::string before = header->ToString();

  const unsigned count = header->FromString(line.c_str());
  Fuzz::Require(count <= line.size(), "no more is read than the text contains");
  if (count == 0) {
    Fuzz::Require(header->ToString() == before, "a line that is not a header changes nothing");
  } else {
    TextLineReadsBackAsItself(*header);
  }
  return 0;
}

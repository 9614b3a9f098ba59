#include <YLog/Destination.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "Require.h"

namespace {

void CheckRecord(const std::string& record) {
  Fuzz::Require(record.find('\r') == std::string::npos, "no carriage return remains");
  Fuzz::Require(record.find("\n\n") == std::string::npos, "no line is empty");
  Fuzz::Require(!record.ends_with('\n'), "no line feed remains at the end");
  Fuzz::Require(YLog::FormatMultiLineMessageText(0, nullptr, record.c_str()) == record,
                "laying out a record again does not change it");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  CheckRecord(YLog::FormatMultiLineMessageText(0, nullptr, text.c_str()));

  const std::string record = YLog::FormatMultiLineMessageText(1, "header", text.c_str());
  Fuzz::Require(record.empty() || record.starts_with("header "),
                "a record begins with its header and one blank");
  CheckRecord(record);
  return 0;
}

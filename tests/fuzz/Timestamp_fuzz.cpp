#include <YLog/Timestamp.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  YLog::Timestamp timestamp;
  const unsigned count = timestamp.FromISO8601String(text.c_str());
  Fuzz::Require(count <= text.size(), "no more is read than the text contains");

  const std::string written = timestamp.ToISO8601String();
  YLog::Timestamp again;
  Fuzz::Require(again.FromISO8601String(written.c_str()) == written.size(),
                "a written text is read to its end");
  Fuzz::Require(again.ToISO8601String() == written, "a text that was read is written unchanged");
  return 0;
}

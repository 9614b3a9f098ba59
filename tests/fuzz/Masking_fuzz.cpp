#include <cstddef>
#include <cstdint>
#include <string>

#include <fuzzer/FuzzedDataProvider.h>

#include <YLog/SensitiveData.h>

#include "Log/Masking/MaskingReference.h"
#include "Require.h"

namespace {

/// The text up to the first NUL, as C strings end there.
std::string ConsumeText(FuzzedDataProvider& input, std::size_t maximumSize) {
  return input.ConsumeRandomLengthString(maximumSize).c_str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const std::string tagName = ConsumeText(input, 8);
  const std::string replacement = ConsumeText(input, 8);
  const std::string text = input.ConsumeRemainingBytesAsString().c_str();

  Fuzz::Require(YLog::ReplaceSensitiveMessage(text.c_str(), tagName.c_str(), replacement.c_str()) ==
                    Support::MaskAttributeSlowly(text, tagName, replacement),
                "attributes are masked as by the reference");
  Fuzz::Require(YLog::ReplaceSensitiveMessageInHTTP(text.c_str()) == Support::MaskHTTPSlowly(text),
                "bodies are masked as by the reference");
  return 0;
}

#include <YBase/TextConversion.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "Require.h"

namespace {

void RepairedTextStaysAsItIs(const std::string& text) {
  const std::wstring wide = YBase::UTF8ToWideChar(text.c_str());
  const std::string narrow = YBase::WideCharToUTF8(wide.c_str());
  Fuzz::Require(YBase::UTF8ToWideChar(narrow.c_str()) == wide, "text that was converted once is valid");
  Fuzz::Require(wide.size() <= std::strlen(text.c_str()), "no byte becomes more than one character");
}

void WideTextBecomesValid(const std::uint8_t* data, std::size_t size) {
  std::wstring wide(size / sizeof(wchar_t), L'\0');
  std::memcpy(wide.data(), data, wide.size() * sizeof(wchar_t));
  const std::string narrow = YBase::WideCharToUTF8(wide.c_str());
  const std::wstring back = YBase::UTF8ToWideChar(narrow.c_str());
  Fuzz::Require(YBase::WideCharToUTF8(back.c_str()) == narrow, "wide text becomes valid UTF-8");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  RepairedTextStaysAsItIs(std::string(reinterpret_cast<const char*>(data), size));
  WideTextBecomesValid(data, size);
  return 0;
}

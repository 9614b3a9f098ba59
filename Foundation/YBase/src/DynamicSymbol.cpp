#include "DynamicSymbol.h"

#include <dlfcn.h>

namespace YBase {

DynamicSymbol FindDynamicSymbol(std::uintptr_t address) {
  Dl_info info{};
  // NOLINTNEXTLINE(performance-no-int-to-ptr): a number is what the stack holds.
  if (::dladdr(reinterpret_cast<const void*>(address), &info) == 0) return {};
  const auto textOf = [](const char* text) { return text != nullptr ? text : ""; };
  return {textOf(info.dli_sname), textOf(info.dli_fname), reinterpret_cast<std::uintptr_t>(info.dli_fbase)};
}

}  // namespace YBase

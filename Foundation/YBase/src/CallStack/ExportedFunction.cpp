#include "CallStack/ExportedFunction.h"

#include <dlfcn.h>

namespace YBase {

StackFrame FindExportedFunction(std::uintptr_t address) {
  StackFrame frame{.address = address};
  Dl_info info{};
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the stack contains numbers.
  if (::dladdr(reinterpret_cast<const void*>(address), &info) == 0) return frame;
  frame.moduleBase = reinterpret_cast<std::uintptr_t>(info.dli_fbase);
  if (info.dli_fname != nullptr) frame.module = info.dli_fname;
  if (info.dli_sname != nullptr) frame.function = info.dli_sname;
  return frame;
}

}  // namespace YBase

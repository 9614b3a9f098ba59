// A client's module with a static object that takes a call stack when the module is loaded.

#include <YBase/CallStack.h>

namespace {

const YBase::CallStack STACK = YBase::CreateCallStack();

}  // namespace

extern "C" const wchar_t* GetFrameOfStart() {
  return STACK.GetFrameDescription(6);
}

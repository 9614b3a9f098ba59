// A client's program that prints call stacks: of a static object before main, of main, and of a function that
// runs at exit. Before each stack it prints a name and the offset of the function that took the stack.

#include <dlfcn.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <YBase/CallStack.h>

// Like the library's thin wrappers, which the compiler inlines into the client's functions.
namespace YLog {

template <class T>
[[gnu::always_inline]] inline YBase::CallStack TakeInHeader(T) {
  return YBase::CreateCallStack();
}

}  // namespace YLog

namespace orders {

void Print(const char* name, const YBase::CallStack& stack, void (*taker)()) {
  Dl_info info;
  dladdr(reinterpret_cast<const void*>(&Print), &info);
  const auto offset =
      reinterpret_cast<std::uintptr_t>(taker) - reinterpret_cast<std::uintptr_t>(info.dli_fbase);
  std::printf("= %s %lx\n", name, static_cast<unsigned long>(offset));
  for (unsigned i = 0; i != stack.GetFrameCount(); ++i) std::printf("%ls\n", stack.GetFrameDescription(i));
}

[[gnu::noinline]] void BeforeMain() {
  Print("before-main", YBase::CreateCallStack(), BeforeMain);
}
[[gnu::noinline]] void AtExit() {
  Print("at-exit", YBase::CreateCallStack(), AtExit);
}

[[gnu::noinline]] void Serve();

[[gnu::always_inline]] inline YBase::CallStack TakeInline() {
  return YLog::TakeInHeader(1);
}

void Serve() {
  Print("main", TakeInline(), Serve);
}

const bool STARTED = (BeforeMain(), true);

}  // namespace orders

int main() {
  std::atexit(orders::AtExit);
  orders::Serve();
  return orders::STARTED ? 0 : 1;
}

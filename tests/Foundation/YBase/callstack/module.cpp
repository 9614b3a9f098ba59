// A client's module that calls back through an exported function and an internal one.

#include <atomic>

namespace MODULE_NAMESPACE {

std::atomic<int> gCalls = 0;

[[gnu::noinline]] void Exported(void (*work)()) {
  work();
  gCalls = gCalls + 1;
}

namespace {

[[gnu::noinline]] void Internal(void (*work)()) {
  Exported(work);
  gCalls = gCalls + 1;
}

}  // namespace
}  // namespace MODULE_NAMESPACE

extern "C" void RunInModule(void (*work)()) {
  MODULE_NAMESPACE::Internal(work);
  MODULE_NAMESPACE::gCalls = MODULE_NAMESPACE::gCalls + 1;
}

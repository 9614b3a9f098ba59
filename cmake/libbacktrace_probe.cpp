// Whether libbacktrace, reading files the library's way, finds where this function stands. Returns 0 if so.

#include <backtrace.h>

#include <cstdint>
#include <string_view>

namespace {

void Ignore(void*, const char*, int) noexcept {}

int Check(void* isFound, std::uintptr_t, const char* file, int line, const char*) noexcept {
  const std::string_view path = file != nullptr ? file : "";
  if (path.ends_with("libbacktrace_probe.cpp") && line > 0) *static_cast<bool*>(isFound) = true;
  return 0;
}

}  // namespace

int main() {
  backtrace_state* const state = backtrace_create_state(nullptr, 0, Ignore, nullptr);
  bool isFound = false;
  if (state != nullptr)
    backtrace_pcinfo(state, reinterpret_cast<std::uintptr_t>(&Check), Check, Ignore, &isFound);
  return isFound ? 0 : 1;
}

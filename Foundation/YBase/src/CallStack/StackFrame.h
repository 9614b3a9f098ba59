#pragma once

#include <cstdint>
#include <string>

namespace YBase {

/// What is known of one active function. Texts are empty and numbers are 0 where nothing is known.
struct StackFrame {
  std::uintptr_t address = 0;     // Inside the call.
  std::string module = {};        // The path of the program or shared object.
  std::uintptr_t moduleBase = 0;  // Offsets in the module begin here.
  std::string function = {};      // As the linker names it, or its name alone.
  std::string file = {};
  int line = 0;
  bool isInlined = false;  // Its code is part of the next frame's function.
};

}  // namespace YBase

#pragma once

#include <cstdint>
#include <string>

namespace YBase {

/// What the loader knows of an address; empty or 0 where it does not.
struct DynamicSymbol {
  std::string name;
  std::string modulePath;
  std::uintptr_t moduleBase = 0;
};

/// Only functions that a module exports have a name here.
///
/// Takes the loader's lock, which a thread holds while it loads a module and runs what that initialises: call
/// it with no lock held that such code may want.
DynamicSymbol FindDynamicSymbol(std::uintptr_t address);

}  // namespace YBase

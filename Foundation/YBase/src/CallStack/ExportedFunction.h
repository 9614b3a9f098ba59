#pragma once

#include <cstdint>

#include "CallStack/StackFrame.h"

namespace YBase {

/// What the loader knows of an address: its module, and the function if the module exports it.
///
/// Takes the loader's lock, which a thread holds while it loads a module and constructs its static objects.
/// Such an object may take a call stack, so this must be called without the `LookupLock`.
StackFrame FindExportedFunction(std::uintptr_t address);

}  // namespace YBase

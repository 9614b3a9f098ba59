#include <algorithm>
#include <iterator>

#include "CallStack/ExportedFunction.h"
#include "CallStack/StackFrames.h"

namespace YBase {

std::vector<StackFrame> FindFrames(std::span<const std::uintptr_t> addresses) {
  std::vector<StackFrame> frames;
  std::transform(addresses.begin(), addresses.end(), std::back_inserter(frames), FindExportedFunction);
  return frames;
}

}  // namespace YBase

#include <YBase/CallStack.h>
#include <YBase/CancellationGuard.h>
#include <unwind.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>

#include "CallStack/FrameText.h"
#include "CallStack/LibraryCode.h"
#include "CallStack/StackFrames.h"
#include "Platform.h"

namespace YBase {
namespace {

constexpr std::size_t MAX_FRAME_COUNT = 256;

struct Walk {
  std::array<std::uintptr_t, MAX_FRAME_COUNT + 1> addresses;
  std::size_t count = 0;
};

_Unwind_Reason_Code AddAddress(_Unwind_Context* context, void* data) noexcept {
  auto& walk = *static_cast<Walk*>(data);
  int isInterrupted = 0;
  const std::uintptr_t address = _Unwind_GetIPInfo(context, &isInterrupted);
  if (address == 0 || walk.count == walk.addresses.size()) return _URC_END_OF_STACK;
  // A call returns to the next instruction, which may belong to another function or line. A signal, however,
  // interrupts the instruction itself.
  walk.addresses[walk.count++] = isInterrupted != 0 ? address : address - 1;
  return _URC_NO_REASON;
}

/// Without the innermost frames, which are all in the library's own image.
std::span<const std::uintptr_t> SkipLibrary(std::span<const std::uintptr_t> addresses) noexcept {
  return {std::find_if_not(addresses.begin(), addresses.end(), Platform::IsInOwnImage), addresses.end()};
}

std::vector<std::wstring> DescribeFrames(const std::vector<StackFrame>& frames) {
  static_assert(CallStack::LIBRARY_FRAME_COUNT < MAX_FRAME_COUNT);
  std::vector<std::wstring> descriptions(CallStack::LIBRARY_FRAME_COUNT, L"libYLog");
  // Code of the library's headers is compiled into the client's image.
  const auto begin = std::find_if_not(frames.begin(), frames.end(), IsLibraryCode);
  std::transform(begin, frames.end(), std::back_inserter(descriptions), DescribeFrame);
  return descriptions;
}

}  // namespace

const wchar_t* CallStack::GetFrameDescription(unsigned index) const noexcept {
  assert(index < mFrames.size());
  return index < mFrames.size() ? mFrames[index].c_str() : L"";
}

CallStack CreateCallStack() {
  // Files are read by functions of C, through which neither an exception nor a cancellation may pass.
  const CancellationGuard cancellationGuard;
  Walk walk;
  _Unwind_Backtrace(AddAddress, &walk);
  std::vector<std::wstring> frames =
      DescribeFrames(FindFrames(SkipLibrary(std::span(walk.addresses).first(walk.count))));
  if (walk.count == walk.addresses.size() || frames.size() > MAX_FRAME_COUNT) {
    frames.resize(std::min(frames.size(), MAX_FRAME_COUNT));
    frames.emplace_back(L"(further frames are left out)");
  }
  return CallStack(std::move(frames));
}

}  // namespace YBase

#include <YBase/CallStack.h>
#include <YBase/CancellationGuard.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>

#include "Platform.h"
#include "StackFrames.h"

namespace YBase {
namespace {

using Description = std::shared_ptr<const std::wstring>;

constexpr std::size_t MAX_FRAME_COUNT = 256;

/// What is behind the innermost run of frames in the library's own image. A sanitizer may have put frames of
/// its own before it.
std::span<const std::uintptr_t> SkipLibrary(std::span<const std::uintptr_t> addresses) noexcept {
  const auto begin = std::find_if(addresses.begin(), addresses.end(), Platform::IsInOwnImage);
  if (begin == addresses.end()) return addresses;
  return {std::find_if_not(begin, addresses.end(), Platform::IsInOwnImage), addresses.end()};
}

/// Collects frames up to the limit.
class Collector {
 public:
  Collector() {
    static_assert(CallStack::LIBRARY_FRAME_COUNT < MAX_FRAME_COUNT);
    mFrames.assign(CallStack::LIBRARY_FRAME_COUNT, std::make_shared<const std::wstring>(L"libYLog"));
  }

  void Add(const std::shared_ptr<const StackFrames::Frames>& frames) {
    for (const StackFrames::Frame& frame : *frames) {
      // Code of the library's headers stands in the client's image.
      if (mbIsInClient || !frame.isLibraryCode) AddFromClient(Description(frames, &frame.description));
    }
  }

  std::vector<Description> Finish(bool isCut) {
    if (isCut || mbIsCut) {
      mFrames.push_back(std::make_shared<const std::wstring>(L"(further frames are left out)"));
    }
    return std::move(mFrames);
  }

 private:
  void AddFromClient(Description description) {
    mbIsInClient = true;
    mbIsCut = mFrames.size() == MAX_FRAME_COUNT;
    if (!mbIsCut) mFrames.push_back(std::move(description));
  }

  std::vector<Description> mFrames;
  bool mbIsInClient = false;
  bool mbIsCut = false;
};

}  // namespace

const wchar_t* CallStack::GetFrameDescription(unsigned index) const noexcept {
  assert(index < mFrames.size());
  return index < mFrames.size() ? mFrames[index]->c_str() : L"";
}

CallStack CreateCallStack() {
  // Files are read by way of functions of C, through which no exception may pass, nor a cancellation.
  const CancellationGuard cancellationGuard;
  std::array<std::uintptr_t, MAX_FRAME_COUNT + 1> storage;
  const std::size_t count = StackFrames::GetAddresses(storage);
  const bool isCut = count == storage.size();
  Collector collector;
  for (const auto& frames : StackFrames::Describe(SkipLibrary(std::span(storage).first(count)))) {
    collector.Add(frames);
  }
  return CallStack(collector.Finish(isCut));
}

}  // namespace YBase

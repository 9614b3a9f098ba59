#pragma once

#include <string>
#include <vector>

#include <YBase/CallStack.h>
#include <YBase/TextConversion.h>

/// The frames of a stack without those of the library: from the seventh on.
inline std::vector<std::string> GetShownFrames(const YBase::CallStack& stack) {
  std::vector<std::string> frames;
  for (unsigned i = 6; i < stack.GetFrameCount(); ++i) {
    frames.push_back(YBase::WideCharToUTF8(stack.GetFrameDescription(i)));
  }
  return frames;
}

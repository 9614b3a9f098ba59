#include "Destinations/CallStackText.h"

#include <YBase/CallStack.h>
#include <YBase/TextConversion.h>

namespace YLog {

void AppendCallStack(RecordText& record) {
  record.Append("\n--------- callstack ---------");
  const YBase::CallStack callStack = YBase::CreateCallStack();
  // The library's own frames are of no use to a reader.
  for (unsigned index = YBase::CallStack::LIBRARY_FRAME_COUNT; index < callStack.GetFrameCount(); ++index) {
    record.Append('\n');
    record.Append(YBase::WideCharToUTF8(callStack.GetFrameDescription(index)));
  }
  record.Append("\n-----------------------------");
}

}  // namespace YLog

#pragma once

#include <YBase/TextBuffer.h>

namespace YLog {

/// A record under construction. Ordinary records need no heap.
using RecordText = YBase::TextBuffer<4096>;

/// Appends the layout that `FormatMultiLineMessageText` describes to `record`.
void AppendMultiLineMessageText(const char* headerText, const char* messageText, RecordText& record);

}  // namespace YLog

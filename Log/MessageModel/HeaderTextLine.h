#pragma once

#include <string>

namespace YLog {

class MessageHeader_Impl;

/// Appends a header as one line of text without its end. Line breaks in the fields become blanks.
///
/// Failure: `std::bad_alloc`; the beginning of the line may have been appended.
void AppendHeaderTextLine(std::string& line, const MessageHeader_Impl& header);

/// Reads the header at the beginning of `line` and returns how many characters belong to it. Returns 0 if
/// there is none; some of the fields may have been set.
unsigned ReadHeaderTextLine(const char* line, MessageHeader_Impl& header);

}  // namespace YLog

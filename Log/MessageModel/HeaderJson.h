#pragma once

#include <string>

namespace YLog {

class MessageHeader;

/// A header as one JSON object on one line, with a line feed behind it. All values are strings; the message
/// ID and the user, session and object ID are there only where the header has them.
std::string BuildHeaderJson(const MessageHeader& header);

}  // namespace YLog

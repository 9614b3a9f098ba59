#pragma once

#include <string>

namespace YLog {

class MessageHeader;

/// A header as one JSON object on one line, followed by a line feed. All values are strings. The message ID
/// and the user, session and object ID are left out if the header has none.
std::string BuildHeaderJson(const MessageHeader& header);

}  // namespace YLog

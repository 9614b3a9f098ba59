#pragma once

#include <YBase/BasicMessageCursor.h>

namespace YBase {

/// Visits a tree that may be changed, and can add the messages that it lacks.
using MessageCursor = BasicMessageCursor<Message>;

}  // namespace YBase

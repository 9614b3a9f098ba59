#pragma once

#include <YBase/BasicMessageCursor.h>

namespace YBase {

/// Walks a tree that may be changed, and adds to it what it lacks where that is asked for.
using MessageCursor = BasicMessageCursor<Message>;

}  // namespace YBase

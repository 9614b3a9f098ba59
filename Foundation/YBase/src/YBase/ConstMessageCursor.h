#pragma once

#include <YBase/BasicMessageCursor.h>

namespace YBase {

/// Walks a tree that stays as it is.
using ConstMessageCursor = BasicMessageCursor<const Message>;

}  // namespace YBase

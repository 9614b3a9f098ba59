#pragma once

#include <YBase/BasicMessageCursor.h>

namespace YBase {

/// Visits a tree that does not change.
using ConstMessageCursor = BasicMessageCursor<const Message>;

}  // namespace YBase

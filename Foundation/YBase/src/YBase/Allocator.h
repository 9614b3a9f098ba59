#pragma once

#include <memory>

namespace YBase {

/// The allocator of containers that outlive a call.
template <class T>
using Allocator = std::allocator<T>;

}  // namespace YBase

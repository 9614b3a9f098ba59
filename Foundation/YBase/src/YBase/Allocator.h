#pragma once

#include <memory>

namespace YBase {

/// Where containers that outlive a call take their memory from.
template <class T>
using Allocator = std::allocator<T>;

}  // namespace YBase

#pragma once

#include <memory>

namespace YBase {

/// The only owner of an object.
template <class T>
using StrongPtr = std::unique_ptr<T>;

}  // namespace YBase

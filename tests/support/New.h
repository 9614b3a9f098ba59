#pragma once

#include <utility>

#include <YBase/SmartPtrI.h>

namespace Support {

/// A new counted object, held by the reference that is returned.
template <class T, class... Arguments>
YBase::SmartPtrI<T> New(Arguments&&... arguments) {
  return YBase::SmartPtrI<T>(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace Support

#pragma once

#include <YSynch/Export.h>

namespace YSynch {

/// An object kept for one thread in a `ThreadLocalStorage`.
class YSYNCH_EXPORT ThreadContext {
 public:
  ThreadContext(const ThreadContext&) = delete;
  ThreadContext& operator=(const ThreadContext&) = delete;

 protected:
  ThreadContext() = default;
  virtual ~ThreadContext();

 public:
  /// Destroys and frees the object. Called when its thread ends, or when the storage is destroyed, by the
  /// thread that does that.
  ///
  /// Failure: none; an exception ends the process.
  virtual void Delete() = 0;
};

}  // namespace YSynch

#pragma once

#include <YLog/Export.h>

namespace YLog {

/// Keeps the library running. A client holds one for as long as it uses the library; the first one starts it
/// and the last one stops it.
///
/// May be a static object. Pointers that the library has returned may be released after it has stopped, but
/// not used.
///
/// Threads: any. When the last one is destroyed, no other thread may be using the library.
///
/// Reentrancy: the last one releases the client's hook and destinations after the library has stopped. Their
/// destructors may start it again, or fork.
///
/// Failure: if the library cannot be started, the constructor throws `YBase::ExceptionImpl<YBase::Message>`
/// or `std::bad_alloc`, and the library stays stopped. Functions that need the library throw
/// `YBase::ExceptionImpl<YBase::Message>` while no `Initializer` is alive.
class YLOG_EXPORT Initializer {
 public:
  Initializer();
  ~Initializer();
  Initializer(const Initializer&) = delete;
  Initializer& operator=(const Initializer&) = delete;
};

}  // namespace YLog

#pragma once

#include "Destinations/RecordLayout.h"

namespace YLog {

/// Appends the calling thread's stack on lines of their own, between two lines of dashes. It begins with the
/// function of the client that called the library.
///
/// Failure: `std::bad_alloc`.
void AppendCallStack(RecordText& record);

}  // namespace YLog

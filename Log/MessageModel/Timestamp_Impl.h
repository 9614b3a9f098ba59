#pragma once

#include <YLog/Timestamp.h>

namespace YLog {

/// The public class is its own implementation.
using Timestamp_Impl = Timestamp;

}  // namespace YLog

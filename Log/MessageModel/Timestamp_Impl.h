#pragma once

#include <YLog/Timestamp.h>

namespace YLog {

/// The timestamp has no virtual face: the public class is its own implementation.
using Timestamp_Impl = Timestamp;

}  // namespace YLog

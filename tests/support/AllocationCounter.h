#pragma once

// Programs get these through ylog_allocation_tests(): AllocationCounter.cpp replaces `operator new`.

namespace Support {

/// The number of times that the calling thread has called `operator new`.
unsigned long GetAllocationCount() noexcept;

/// Makes one allocation of the calling thread fail during its lifetime: the given number of calls of
/// `operator new` succeed, and the next one throws `std::bad_alloc`.
class AllocationFailure {
 public:
  explicit AllocationFailure(unsigned long successes) noexcept;
  ~AllocationFailure();
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;
};

/// Calls a function during one allocation of the calling thread in its lifetime: the given number of calls of
/// `operator new` are left alone, and the next one makes the call before it takes any memory.
class AllocationHook {
 public:
  AllocationHook(unsigned long skipped, void (*function)(void* data), void* data) noexcept;
  ~AllocationHook();
  AllocationHook(const AllocationHook&) = delete;
  AllocationHook& operator=(const AllocationHook&) = delete;
};

}  // namespace Support

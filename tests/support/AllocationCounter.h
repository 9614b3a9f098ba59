#pragma once

// Programs get these through ylog_allocation_tests(): AllocationCounter.cpp replaces `operator new`.

namespace Support {

/// How often the calling thread has called `operator new`.
unsigned long GetAllocationCount() noexcept;

/// Lets memory run out for the calling thread as long as it exists, once: so many calls of `operator new`
/// succeed, and the one after them throws `std::bad_alloc`.
class AllocationFailure {
 public:
  explicit AllocationFailure(unsigned long successes) noexcept;
  ~AllocationFailure();
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;
};

/// Calls a function in the middle of an allocation of the calling thread, once, as long as it exists: so many
/// calls of `operator new` are left alone, and the one after them makes the call before it takes any memory.
class AllocationHook {
 public:
  AllocationHook(unsigned long skipped, void (*function)(void* data), void* data) noexcept;
  ~AllocationHook();
  AllocationHook(const AllocationHook&) = delete;
  AllocationHook& operator=(const AllocationHook&) = delete;
};

}  // namespace Support

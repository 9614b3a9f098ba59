#include "support/AllocationCounter.h"

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace Support {

namespace {

constexpr unsigned long NEVER = std::numeric_limits<unsigned long>::max();

constinit thread_local unsigned long gsAllocationCount = 0;
constinit thread_local unsigned long gsFailingAllocation = NEVER;
constinit thread_local unsigned long gsHookedAllocation = NEVER;
using Hook = void (*)(void* data);
constinit thread_local Hook gspHook = nullptr;
constinit thread_local void* gspHookData = nullptr;

void CountAllocation() {
  const unsigned long number = gsAllocationCount++;
  if (number == gsHookedAllocation) gspHook(gspHookData);
  if (number != gsFailingAllocation) return;
  gsFailingAllocation = NEVER;
  throw std::bad_alloc();
}

}  // namespace

unsigned long GetAllocationCount() noexcept {
  return gsAllocationCount;
}

AllocationFailure::AllocationFailure(unsigned long successes) noexcept {
  gsFailingAllocation = gsAllocationCount + successes;
}

AllocationFailure::~AllocationFailure() {
  gsFailingAllocation = NEVER;
}

AllocationHook::AllocationHook(unsigned long skipped, Hook function, void* data) noexcept {
  gspHook = function;
  gspHookData = data;
  gsHookedAllocation = gsAllocationCount + skipped;
}

AllocationHook::~AllocationHook() {
  gsHookedAllocation = NEVER;
}

}  // namespace Support

// By default the other operators call the first of these two, but not where a sanitizer replaces them.

void* operator new(std::size_t size) {
  Support::CountAllocation();
  void* const memory = std::malloc(size != 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* operator new(std::size_t size, std::align_val_t alignment) {
  Support::CountAllocation();
  const auto boundary = static_cast<std::size_t>(alignment);
  void* const memory = std::aligned_alloc(boundary, (size + boundary - 1) / boundary * boundary);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* operator new[](std::size_t size) {
  return ::operator new(size);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return ::operator new(size, alignment);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return ::operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
  return ::operator new(size, nothrow);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}

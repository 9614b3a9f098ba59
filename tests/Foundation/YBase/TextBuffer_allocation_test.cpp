#include <YBase/TextBuffer.h>

#include <new>
#include <string_view>

#include "support/AllocationCounter.h"

namespace {

using Support::AllocationFailure;
using Support::GetAllocationCount;

using Buffer = YBase::TextBuffer<8>;

TEST(TextBuffer, AllocatesOnlyBeyondItsOwnStorage) {
  const unsigned long before = GetAllocationCount();
  Buffer buffer;
  buffer.Append("12345678");
  EXPECT_EQ(GetAllocationCount(), before);
  buffer.Append('9');
  EXPECT_EQ(GetAllocationCount(), before + 1);
  EXPECT_EQ(buffer.View(), "123456789");
}

TEST(TextBuffer, KeepsItsTextWhenMemoryRunsOut) {
  Buffer buffer;
  buffer.Append("1234");
  const AllocationFailure failure(0);
  EXPECT_THROW(buffer.Append("56789"), std::bad_alloc);
  EXPECT_EQ(buffer.View(), "1234");
}

TEST(TextBuffer, DoesNotAllocateWithinItsReservedSize) {
  Buffer buffer;
  buffer.Append("1234");
  buffer.Reserve(100);
  const unsigned long before = GetAllocationCount();
  buffer.Append(std::string_view("x"));
  for (int i = 0; i < 99; ++i) buffer.Append('y');
  EXPECT_EQ(GetAllocationCount(), before);
  EXPECT_EQ(buffer.Size(), 104u);
}

}  // namespace

#include <YDataType/DateTime.h>

#include <chrono>

#include "support/AllocationCounter.h"
#include "support/FakeClock.h"
#include "support/TimeZone.h"

namespace {

using namespace std::chrono_literals;
using Support::FakeClock;
using Support::GetAllocationCount;
using Support::SetTimeZone;
using YDataType::DateTime;

TEST(LocalTime, AllocatesNothingAfterTheFirstCall) {
  SetTimeZone("Europe/Berlin");
  FakeClock clock(std::chrono::sys_days(std::chrono::year{2024} / 7 / 15));
  DateTime::Now();
  const unsigned long before = GetAllocationCount();
  for (int i = 0; i < 10; ++i) {
    DateTime::Now();
    clock.Advance(500ms);
  }
  EXPECT_EQ(GetAllocationCount(), before);
}

}  // namespace

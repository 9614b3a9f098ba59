#include <chrono>
#include <ctime>

#include "support/FakeClock.h"

namespace {

using Support::FakeClock;

using namespace std::chrono_literals;
using YDataType::Clock;

TEST(Clock, IsTheSystemsUnlessReplaced) {
  timespec before{};
  timespec after{};
  ASSERT_EQ(::clock_gettime(CLOCK_REALTIME, &before), 0);
  const auto now = Clock::GetCurrent().Now().time_since_epoch();
  ASSERT_EQ(::clock_gettime(CLOCK_REALTIME, &after), 0);
  EXPECT_GE(now.count(), before.tv_sec * 1000 + before.tv_nsec / 1000000);
  EXPECT_LE(now.count(), after.tv_sec * 1000 + after.tv_nsec / 1000000);
}

TEST(Clock, IsRestoredWhenAFakeOneIsDestroyed) {
  const Clock& system = Clock::GetCurrent();
  {
    FakeClock clock(Clock::Instant(5ms));
    EXPECT_EQ(Clock::GetCurrent().Now(), Clock::Instant(5ms));
    clock.Advance(2s);
    EXPECT_EQ(Clock::GetCurrent().Now(), Clock::Instant(2005ms));
  }
  EXPECT_EQ(&Clock::GetCurrent(), &system);
}

}  // namespace

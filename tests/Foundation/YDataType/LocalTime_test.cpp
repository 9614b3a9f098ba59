#include <YDataType/DateTime.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "Foundation/YDataType/src/LocalTime.h"
#include "support/FakeClock.h"
#include "support/TimeZone.h"

namespace {

using Support::FakeClock;
using Support::SetTimeZone;

using namespace std::chrono_literals;
using YDataType::DateTime;

std::chrono::sys_seconds At(std::chrono::sys_days day, std::chrono::seconds timeOfDay = 0s) {
  return day + timeOfDay;
}

constexpr auto WINTER = std::chrono::sys_days(std::chrono::year{2024} / 1 / 15);
constexpr auto SUMMER = std::chrono::sys_days(std::chrono::year{2024} / 7 / 15);

/// The time of day and, in minutes, both parts of the offset.
std::string Show(std::chrono::sys_seconds instant) {
  const FakeClock clock(instant);
  const DateTime now = DateTime::Now();
  return now.ToString().substr(0, 19) + " " + std::to_string(now.GetStandardOffset()) + "+" +
         std::to_string(now.GetDaylightSavingOffset());
}

TEST(LocalTime, ShowsAZoneOfHalfAnHour) {
  SetTimeZone("Asia/Kolkata");
  EXPECT_EQ(Show(At(SUMMER, 20h)), "2024-07-16 01:30:00 330+0");
}

TEST(LocalTime, ShowsDaylightSavingOfHalfAnHour) {
  SetTimeZone("Australia/Lord_Howe");
  EXPECT_EQ(Show(At(WINTER)), "2024-01-15 11:00:00 630+30");
  EXPECT_EQ(Show(At(SUMMER)), "2024-07-15 10:30:00 630+0");
}

TEST(LocalTime, ShowsAZoneWestOfUtcWithAnOddHalfHour) {
  SetTimeZone("America/St_Johns");
  EXPECT_EQ(Show(At(WINTER)), "2024-01-14 20:30:00 -210+0");
  EXPECT_EQ(Show(At(SUMMER)), "2024-07-14 21:30:00 -210+60");
}

TEST(LocalTime, ShowsTheZoneFarthestEast) {
  SetTimeZone("Pacific/Kiritimati");
  EXPECT_EQ(Show(At(WINTER, 12h)), "2024-01-16 02:00:00 840+0");
}

TEST(LocalTime, ShowsAZoneWithNegativeDaylightSaving) {
  SetTimeZone("Europe/Dublin");
  const std::string winter = Show(At(WINTER));
  const std::string summer = Show(At(SUMMER));
  // Whether winter or summer time is the standard depends on how the zone's data were compiled.
  EXPECT_THAT(winter, testing::AnyOf("2024-01-15 00:00:00 0+0", "2024-01-15 00:00:00 60+-60"));
  EXPECT_THAT(summer, testing::AnyOf("2024-07-15 01:00:00 0+60", "2024-07-15 01:00:00 60+0"));
}

TEST(LocalTime, ShowsAZoneGivenAsARule) {
  SetTimeZone("AAA-1:45BBB-2:30,M3.2.0,M11.1.0");
  EXPECT_EQ(Show(At(WINTER)), "2024-01-15 01:45:00 105+0");
  EXPECT_EQ(Show(At(SUMMER)), "2024-07-15 02:30:00 105+45");
}

TEST(LocalTime, ShowsUtcForAnUnknownZone) {
  SetTimeZone("No/Such_Zone");
  EXPECT_EQ(Show(At(SUMMER, 12h)), "2024-07-15 12:00:00 0+0");
}

TEST(LocalTime, CountsSecondsOfAnOffsetOnlyInTheTimeOfDay) {
  SetTimeZone("AAA-1:02:03");
  EXPECT_EQ(Show(At(SUMMER)), "2024-07-15 01:02:03 62+0");
}

TEST(LocalTime, SkipsAnHourWhenTheClocksGoForward) {
  SetTimeZone("Europe/Berlin");
  const auto change = At(std::chrono::year{2024} / 3 / 31, 1h);
  EXPECT_EQ(Show(change - 1s), "2024-03-31 01:59:59 60+0");
  EXPECT_EQ(Show(change), "2024-03-31 03:00:00 60+60");
}

TEST(LocalTime, RepeatsAnHourWhenTheClocksGoBack) {
  SetTimeZone("Europe/Berlin");
  const auto change = At(std::chrono::year{2024} / 10 / 27, 1h);
  EXPECT_EQ(Show(change - 1h), "2024-10-27 02:00:00 60+60");
  EXPECT_EQ(Show(change - 1s), "2024-10-27 02:59:59 60+60");
  EXPECT_EQ(Show(change), "2024-10-27 02:00:00 60+0");
  EXPECT_EQ(Show(change + 1h), "2024-10-27 03:00:00 60+0");
}

TEST(LocalTime, ShowsTheRightTotalOffsetIfTheStandardOffsetWasDifferent) {
  SetTimeZone("Europe/London");
  // From 1968 to 1971, standard time was one hour ahead of UTC.
  EXPECT_EQ(Show(At(std::chrono::year{1970} / 1 / 15)).substr(0, 19), "1970-01-15 01:00:00");
  const YDataType::CivilTime local = YDataType::GetLocalTime(At(std::chrono::year{1970} / 1 / 15));
  EXPECT_EQ(local.standardOffset + local.daylightSavingOffset, 60);
}

TEST(LocalTime, FollowsAClockThatJumps) {
  SetTimeZone("Europe/Berlin");
  FakeClock clock(At(SUMMER));
  EXPECT_EQ(DateTime::Now().ToString(), "2024-07-15 02:00:00.000");
  clock.Advance(999ms);
  EXPECT_EQ(DateTime::Now().ToString(), "2024-07-15 02:00:00.999");
  clock.Advance(-1s);
  EXPECT_EQ(DateTime::Now().ToString(), "2024-07-15 01:59:59.999");
  clock.Set(At(WINTER));
  EXPECT_EQ(DateTime::Now().ToString(), "2024-01-15 01:00:00.000");
}

TEST(LocalTime, NoticesANewZoneWithinTheSameSecond) {
  const FakeClock clock(At(SUMMER));
  SetTimeZone("Europe/Berlin");
  EXPECT_EQ(DateTime::Now().ToString(), "2024-07-15 02:00:00.000");
  SetTimeZone("Asia/Kolkata");
  EXPECT_EQ(DateTime::Now().ToString(), "2024-07-15 05:30:00.000");
  SetTimeZone("UTC");
  EXPECT_EQ(DateTime::Now().ToString(), "2024-07-15 00:00:00.000");
}

TEST(LocalTime, NoticesANewZoneWithTheSameStandardOffset) {
  const FakeClock clock(At(SUMMER));
  SetTimeZone("AAA0BBB,M3.2.0,M11.1.0");
  EXPECT_EQ(DateTime::Now().GetHour(), 1);
  SetTimeZone("CCC0");
  EXPECT_EQ(DateTime::Now().GetHour(), 0);
}

/// Asks for the time when the other objects of its thread have been destroyed.
struct AsksWhenItsThreadEnds {
  int* answer = nullptr;
  ~AsksWhenItsThreadEnds() {
    if (answer != nullptr) *answer = DateTime::Now().GetHour();
  }
};
thread_local AsksWhenItsThreadEnds gsAsksLast;

TEST(LocalTime, IsAvailableWhileAThreadsObjectsAreDestroyed) {
  SetTimeZone("Asia/Kolkata");
  const FakeClock clock(At(SUMMER));
  int hour = -1;
  std::thread([&] { gsAsksLast.answer = &hour; }).join();
  EXPECT_EQ(hour, 5);
}

const int gsYearBeforeMain = DateTime::Now().GetYear();

TEST(LocalTime, IsAvailableBeforeMain) {
  EXPECT_GE(gsYearBeforeMain, 2024);
}

TEST(LocalTime, IsRightInEveryThreadWhileTheClockRuns) {
  SetTimeZone("Asia/Kolkata");
  FakeClock clock(At(SUMMER));
  std::atomic<bool> running{true};
  std::atomic<int> wrong{0};
  std::vector<std::jthread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      while (running) wrong += DateTime::Now().GetMinute() != 30;
    });
  }
  for (int i = 0; i < 2000; ++i) clock.Advance(1h);
  running = false;
  threads.clear();
  EXPECT_EQ(wrong, 0);
}

/// Whether a forked child gets the local time and exits. If it hangs, its alarm ends it.
bool ChildTellsTheTime() {
  const pid_t child = ::fork();
  if (child == 0) {
    ::alarm(30);
    ::_exit(DateTime::Now().GetMinute() == 30 ? 0 : 1);
  }
  int status = -1;
  return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

TEST(LocalTime, IsAvailableInChildrenForkedWhileOtherThreadsUseIt) {
  SetTimeZone("Asia/Kolkata");
  FakeClock clock(At(SUMMER));
  std::atomic<bool> running{true};
  std::vector<std::jthread> threads;
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([&] {
      // A new instant each time, so that each call reaches the C library.
      for (auto instant = At(SUMMER); running; instant += 1s) YDataType::GetLocalTime(instant);
    });
  }
  bool right = true;
  for (int i = 0; i < 200 && right; ++i) {
    clock.Advance(1h);
    right = ChildTellsTheTime();
  }
  running = false;
  threads.clear();
  EXPECT_TRUE(right);
}

}  // namespace

#include <YSynch/AtomicLong.h>

#include <gtest/gtest.h>

namespace {

TEST(AtomicLong, CountsFromItsInitialValue) {
  YSynch::AtomicLong number(41);
  EXPECT_EQ(number.Increment(), 42);
  EXPECT_EQ(number.Get(), 42);
  EXPECT_EQ(number.Decrement(), 41);
}

TEST(AtomicLong, IsZeroByDefault) {
  EXPECT_EQ(YSynch::AtomicLong().Get(), 0);
}

TEST(AtomicLong, IncrementsOnlyIfPositive) {
  YSynch::AtomicLong number;
  EXPECT_FALSE(number.IncrementIfPositive());
  EXPECT_EQ(number.Get(), 0);
  number.Set(-5);
  EXPECT_FALSE(number.IncrementIfPositive());
  EXPECT_EQ(number.Get(), -5);
  number.Set(1);
  EXPECT_TRUE(number.IncrementIfPositive());
  EXPECT_EQ(number.Get(), 2);
}

}  // namespace
